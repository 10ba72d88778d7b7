"""Colour arithmetic, fading, tinting, blits and flips in plain integers and whole arrays.

Written from the rules and sharing nothing with the module. Words and buffers are numpy arrays;
buffers are bytes.
"""

import fractions

import numpy

WORD = 2**32


def channels(word):
    return [word >> place & 255 for place in (0, 8, 16)]


def packed(values):
    return sum(value << place for value, place in zip(values, (0, 8, 16)))


def multalpha(word, alpha):
    return packed([value * alpha // 256 for value in channels(word)])


def blend(a, b, weight):
    """For every weight: products wrap at 32 bits, and only the low byte keeps what it spills."""
    spilling = 0
    for place, mask in ((0, WORD - 1), (8, 0xFF00), (16, 0xFF0000)):
        part = (a & 255 << place) * weight + (b & 255 << place) * (256 - weight)
        spilling += part % WORD // 256 & mask
    return spilling % 2**24


def mapped(colour, masks):
    """The word of a GM colour, 0x00BBGGRR, opaque; every mask is eight bits wide or empty."""
    word = masks[3]
    for value, mask in zip(channels(colour), masks):
        word |= value * (mask // 255)
    return word


def faded(buffer, alpha, masks):
    """Every word of the buffer with its alpha scaled."""
    words = buffer[: len(buffer) // 4 * 4].view(numpy.uint32).astype(numpy.uint64)
    colour = words & sum(masks[:3])
    if masks[3] == 0xFF000000:
        scaled = (words // 256 * alpha) % WORD & masks[3]
    else:
        scaled = (words & masks[3]) * alpha // 256 & masks[3]
    result = buffer.copy()
    result[: len(words) * 4] = (scaled + colour).astype(numpy.uint32).view(numpy.uint8)
    return result


def subtracted(buffer, pattern):
    """The buffer with a repeating list of bytes taken from it."""
    losses = numpy.resize(numpy.array(pattern, numpy.int64), len(buffer))
    return numpy.maximum(buffer.astype(numpy.int64) - losses, 0).astype(numpy.uint8)


def word_bytes(word):
    return [word >> place & 255 for place in (0, 8, 16, 24)]


def tinted(buffer, tint, masks):
    """The buffer with each channel lowered by what the tint lacks of white: in whole steps of eight
    bytes, and what remains with the bytes of the word the other way round."""
    loss = word_bytes(mapped(0xFFFFFF - (tint & 0xFFFFFF), masks) & ~masks[3])
    steps = len(buffer) // 8 * 8
    return numpy.concatenate(
        [subtracted(buffer[:steps], loss), subtracted(buffer[steps:], loss[::-1])]
    )


def added(source, target, x, y):
    """Words [y][x] of `target` with `source` added at (x, y) byte by byte."""
    result = target.copy()
    height, width = source.shape
    target_height, target_width = target.shape
    if x + width >= target_width:
        return result  # touches or crosses the right edge
    source = source[:, max(-x, 0) :]
    x, y = max(x, 0), max(y, 0)
    rows = min(len(source), max(target_height - y, 0))
    if not rows or not source.shape[1]:
        return result
    place = result[y : y + rows, x : x + source.shape[1]]
    sums = numpy.ascontiguousarray(source[:rows]).view(numpy.uint8).astype(
        int
    ) + numpy.ascontiguousarray(place).view(numpy.uint8)
    place[...] = numpy.minimum(sums, 255).astype(numpy.uint8).view(numpy.uint32)
    return result


def upside_down(words):
    return words[::-1]


def mirrored(words):
    return words[:, ::-1]


def turned_one_row_low(words):
    """Row i is row h - i mirrored; row 0 is blank."""
    result = numpy.zeros_like(words)
    for i in range(1, len(words)):
        result[i] = words[len(words) - i, ::-1]
    return result


def curve(first, second, third, t):
    """The two values, and the share of the first of them, that a life fraction lies between."""
    if t > 0.5:
        return first, second, 2 * (fractions.Fraction(t) - fractions.Fraction(1, 2))
    return second, third, 2 * fractions.Fraction(t)


def desired_alpha(start, half, end, t):
    """Exact up to the truncation; the low 32 bits, signed."""
    near, far, share = curve(start, half, end, t)
    alpha = fractions.Fraction(near) * share + fractions.Fraction(far) * (1 - share)
    low = int(alpha * 255) % WORD
    return low - WORD if low >= WORD // 2 else low


def desired_tint(color1, color2, color3, t):
    near, far, share = curve(color1, color2, color3, t)
    share = numpy.float32(float(share))
    return blend(near % WORD, far % WORD, int(256 * float(share)))
