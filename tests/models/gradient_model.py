"""What gradients and rectangles come to, pixel by pixel, in plain integers and single floats.

Written from the rules and sharing nothing with the module: every pixel a rule speaks of is worked
out on its own, and those outside the picture are dropped when they would be set.
"""

import numpy

SMALLEST_INT = -(2**31)


def single(value):
    return numpy.float32(value)


def truncated(value):
    """Toward zero; what does not fit 32 bits is the smallest integer."""
    if numpy.isnan(value) or not SMALLEST_INT <= value < 2**31:
        return SMALLEST_INT
    return int(value)


class Picture(object):
    """A grid of 32-bit words and the places of red, green and blue in them.

    words   numpy words [y][x]
    shifts  of red, green and blue in a word
    alpha   the bits that an opaque pixel has beside its colour
    """

    def __init__(self, words, shifts, alpha):
        self.rows = [[int(word) for word in row] for row in words]
        self.shifts = shifts
        self.alpha = alpha
        self.height, self.width = words.shape

    @classmethod
    def of(cls, words, surface):
        """A picture of words in a pygame Surface's format."""
        return cls(words, surface.get_shifts()[:3], surface.get_masks()[3] & 0xFFFFFFFF)

    def change(self, x, y, change):
        """Replaces the word at (x, y), if there is one, by change(word)."""
        if 0 <= x < self.width and 0 <= y < self.height:
            self.rows[y][x] = change(self.rows[y][x]) & 0xFFFFFFFF

    def mapped(self, colour):
        """The word of a GM colour, 0x00BBGGRR."""
        return self.alpha | sum(
            (colour >> place & 255) << shift for place, shift in zip((0, 8, 16), self.shifts)
        )

    def words(self):
        return numpy.array(self.rows, numpy.uint32).reshape(self.height, self.width)


def multalpha(word, alpha):
    return sum((word >> place & 255) * alpha // 256 << place for place in (0, 8, 16))


def between(first, second, weight):
    """Both GM colours mixed, `first` with weight 256ths."""
    return sum(
        ((first >> place & 255) * weight + (second >> place & 255) * (256 - weight)) // 256 << place
        for place in (0, 8, 16)
    )


def gradient_word(picture, first, second, t):
    return picture.mapped(between(first, second, truncated(single(255) * t)))


def fractions(length):
    """1.0, then less by one step of 1/length each time, rounded to single floats."""
    step = single(numpy.inf) if length == 0 else single(1.0 / length)
    t = single(1)
    while True:
        yield t
        t = single(t - step)


def laid_over(added, keep):
    return lambda word: added + multalpha(word, keep)


def set_to(word):
    return lambda old: word


def rows_of_gradient(picture, x1, y1, x2, y2):
    """(row, its columns, its fraction) of a filled vertical gradient."""
    steps = fractions(y2 - y1)
    if x2 >= picture.width:
        x2 = picture.width - 1
    if y2 >= picture.height:
        y2 = picture.height - 1
    for y in range(y1, y2):
        t = next(steps)
        if 0 <= y:  # rows above the picture only step the fraction
            yield y, range(max(x1, 0), x2), t


def over_weights(opacities):
    """Weights of layers, undermost first, and of the old pixel, with 256 for a share of 1.0."""
    remaining = single(1)
    weights = []
    for opacity in reversed(opacities):
        share = single(single(opacity) * remaining)
        remaining = single(remaining - share)
        weights.insert(0, truncated(single(share * single(256))) % 256)
    return weights, truncated(single(remaining * single(256))) % 256


def vcv_weights(opacities):
    first, middle, last = [single(opacity) for opacity in opacities]
    one, scale = single(1), single(255)
    middle_share = single(single(one - last) * middle)
    coverage = single(last + middle_share)
    first_share = single(single(one - coverage) * first)
    total = single(coverage + first_share)
    weights = [
        truncated(single(share * scale)) % 256 for share in (first_share, middle_share, last)
    ]
    return weights, (255 - truncated(single(total * scale))) % 256


def draw_layers(picture, letters, rectangle, values):
    """A fast_draw_gradients_<letters> call; `values` follow the rectangle in the call."""
    values = list(values)
    layers = []
    for letter in letters:
        count = 2 if letter == "v" else 1
        layers.append((values[:count], values[count]))
        del values[: count + 1]
    assert not values
    with numpy.errstate(all="ignore"):
        weigh = vcv_weights if letters == "vcv" else over_weights
        weights, keep = weigh([opacity for _, opacity in layers])
    weighed = [(colours, weight) for (colours, _), weight in zip(layers, weights)]
    draw_weighed(picture, rectangle, weighed, keep)


def draw_alpha(picture, rectangle, top, bottom, alpha):
    """A fast_draw_gradient_v call."""
    draw_weighed(picture, rectangle, [([top, bottom], alpha % 256)], (255 - alpha) % 256)


def draw_weighed(picture, rectangle, weighed, keep):
    for y, columns, t in rows_of_gradient(picture, *rectangle):
        added = 0
        for colours, weight in weighed:
            word = (
                gradient_word(picture, colours[0], colours[1], t)
                if len(colours) == 2
                else colours[0]
            )
            added += multalpha(word, weight)
        for x in columns:
            picture.change(x, y, laid_over(added, keep))


def fill_translucent(picture, x1, y1, x2, y2, word, alpha):
    if x2 >= picture.width:
        x2 = picture.width - 1
    if y2 >= picture.height:
        y2 = picture.height - 1
    alpha %= 256
    for y in range(max(y1, 0), y2 + 1):
        for x in range(max(x1, 0), x2):
            picture.change(x, y, laid_over(multalpha(word, alpha), 255 - alpha))


def draw_opaque_vertical(picture, rectangle, top, bottom):
    for y, columns, t in rows_of_gradient(picture, *rectangle):
        for x in columns:
            picture.change(x, y, set_to(gradient_word(picture, top, bottom, t)))


def draw_opaque_horizontal(picture, x1, y1, x2, y2, left, right):
    if x2 >= picture.width:
        x2 = picture.width - 1
    if y2 >= picture.height:
        y2 = picture.height - 1
    if x1 >= x2:
        return
    for x, t in zip(range(x1, x2), fractions(x2 - x1)):
        if 0 <= x:
            for y in range(max(y1, 0), y2 + 1):
                picture.change(x, y, set_to(gradient_word(picture, left, right, t)))


def draw_outline(picture, x1, y1, x2, y2, top, bottom):
    steps = fractions(y2 - y1)
    if x2 >= picture.width:
        x2 = picture.width - 1
    count = x2 - x1
    columns = range(max(x1, 0), x1 + count)
    for x in columns:
        picture.change(x, y1, set_to(picture.mapped(top)))
    if y2 >= picture.height:
        y2 = picture.height - 1
    for x in columns:
        picture.change(x, y2, set_to(picture.mapped(bottom)))
    for y in range(y1 + 1, y2 + 1):
        word = gradient_word(picture, top, bottom, next(steps))
        picture.change(x1, y, set_to(word))
        picture.change(x2, y, set_to(word))


def draw_rectangle_color(picture, x1, y1, x2, y2, c1, c2, c3, c4, alpha, outline):
    """A fast_draw_rectangle_color call; returns what it prints."""
    x1, x2 = min(x1, x2), max(x1, x2)
    y1, y2 = min(y1, y2), max(y1, y2)
    with numpy.errstate(all="ignore"):
        a = truncated(single(255) * single(alpha))
    if c1 == c2 and c4 == c3 and c1 == c4:
        if a < 255:
            fill_translucent(picture, x1, y1, x2, y2, c1, a)
            return ""
        return "BUG: should actually fill.\n"
    if c1 == c2 and c4 == c3:
        if a == 255 and outline:
            draw_outline(picture, x1, y1, x2, y2, c1, c4)
        elif a == 255:
            draw_opaque_vertical(picture, (x1, y1, x2, y2), c1, c4)
        elif outline:
            return "BUG: need to draw translucent outline vgrad.\n"
        else:
            draw_alpha(picture, (x1, y1, x2, y2), c1, c4, a)
        return ""
    if a == 255 and not outline:
        draw_opaque_horizontal(picture, x1, y1, x2, y2, c1, c2)
        return ""
    return "Horizontal gradient, complex gradient, or no gradient. %d/%d\n" % (a, outline)
