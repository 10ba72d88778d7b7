"""Makes one moving picture of the PNG files in a folder, in the order of their names.

    python3 docs/make/moving_picture.py FOLDER PICTURE.gif

Needs Pillow.
"""

import glob
import os
import sys

from PIL import Image

COLOURS = 128  # of all pictures together; more of them make the file larger than pages bear
SAMPLES = 8  # pictures from which the colours are chosen
MILLISECONDS = 83  # 12 pictures a second; GIF counts in hundredths


def main():
    folder, target = sys.argv[1:]
    pictures = [
        Image.open(path).convert("RGB") for path in sorted(glob.glob(os.path.join(folder, "*.png")))
    ]
    width, height = pictures[0].size
    samples = Image.new("RGB", (width, height * SAMPLES))
    for i in range(SAMPLES):
        samples.paste(pictures[i * len(pictures) // SAMPLES], (0, height * i))
    palette = samples.quantize(COLOURS, dither=Image.Dither.NONE)
    # Without dithering what does not move stays the same, and takes no room in the file.
    reduced = [picture.quantize(palette=palette, dither=Image.Dither.NONE) for picture in pictures]
    reduced[0].save(target, save_all=True, append_images=reduced[1:], duration=MILLISECONDS, loop=0)
    print("%s: %d pictures, %d KiB" % (target, len(pictures), os.path.getsize(target) // 1024))


if __name__ == "__main__":
    main()
