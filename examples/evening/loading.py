"""The picture that is in the window while the game is made."""

from engine import drawing

from evening import art

TITLE, LINE, BAR = (236, 214, 160), (206, 200, 226), (58, 50, 96)
BAR_WIDTH, BAR_HEIGHT = 360, 6
GROUND_HEIGHT = 90


class LoadingPicture(object):
    """An evening sky over snow, and how far loading is."""

    def __init__(self, screen):
        self._screen = screen
        width, height = screen.get_size()
        self._scene = art.sky(width, height)
        self._scene.blit(art.ground(width, GROUND_HEIGHT), (0, height - GROUND_HEIGHT))

    def draw(self, share, what):
        """Draw it: `share` runs from 0.0 to 1.0, `what` is being made. Showing is the caller's."""
        self._screen.blit(self._scene, (0, 0))
        width, height = self._screen.get_size()
        self._write(height // 3, "An evening in a village", 44, TITLE)
        left, top = (width - BAR_WIDTH) // 2, height // 3 + 70
        self._screen.fill(BAR, (left, top, BAR_WIDTH, BAR_HEIGHT))
        self._screen.fill(TITLE, (left, top, int(BAR_WIDTH * share), BAR_HEIGHT))
        self._write(top + 32, "loading: " + what, 22, LINE)

    def _write(self, y, text, height, color):
        picture = drawing.text_font(height).render(text, True, color)
        self._screen.blit(
            picture,
            ((self._screen.get_width() - picture.get_width()) // 2, y - picture.get_height() // 2),
        )
