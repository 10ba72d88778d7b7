"""Pictures with alpha that SDL has run-length encoded for a surface that is gone since. SDL itself
reads that surface when such a picture is unlocked, so each test has a process of its own."""

import textwrap

import pytest
from support import subprocess_python

PICTURE = """
    import pygame
    from support import host
    host.install_modules()
    import larkspur
    from support import rooms
    pieces = []
    screen = pygame.display.set_mode((64, 48), 0, 32)
    recording = host.set_up(larkspur, screen)

    def encoded():
        picture = pygame.Surface((8, 6), pygame.SRCALPHA, 32)
        pieces.append(picture.subsurface((1, 1, 6, 4)))  # later it would lock the picture
        picture.fill((10, 20, 30, 40))
        picture.fill((50, 60, 70, 255), (2, 1, 3, 3))
        picture.set_alpha(100, pygame.RLEACCEL)
        pygame.Surface((8, 6), 0, 32).blit(picture, (0, 0))
        return picture

    def pixels(surface):
        return [surface.get_at((x, y)) for y in range(6) for x in range(8)]

    plain = pygame.Surface((8, 6), pygame.SRCALPHA, 32)
    plain.fill((10, 20, 30, 40))
    plain.fill((50, 60, 70, 255), (2, 1, 3, 3))

    def draw_on(target, source):
        recording.game.backgrounds[:] = [rooms.make_background(source)]
        larkspur.Room_Draw(rooms.make_room(tiles=[rooms.make_tile()]), target)
"""

USES = {
    "painted on": """
        def use(picture):
            larkspur.fill_translucent(picture, 1, 1, 6, 4, 0x336699, 100)
            return picture
    """,
    "mirrored": """
        use = larkspur.flip_h
    """,
    "scaled": """
        def use(picture):
            return larkspur.scale(picture, 1.0, 1.0)
    """,
    "a target": """
        def use(picture):
            draw_on(picture, pygame.Surface((4, 3), 0, 8))
            return picture
    """,
    "around a target": """
        def use(picture):
            piece = pieces.pop() if pieces else picture.subsurface((1, 1, 6, 4))
            draw_on(piece, pygame.Surface((4, 3), 0, 8))
            return picture
    """,
}


@pytest.mark.parametrize("use", sorted(USES))
def test_picture_encoded_for_a_surface_that_is_gone_is_as_one_that_was_not(use):
    subprocess_python.output(
        textwrap.dedent(PICTURE)
        + textwrap.dedent(USES[use])
        + textwrap.dedent("""
            for _ in range(50):
                picture = encoded()
                result = use(picture)
                # Getting a pixel locks, which encodes it again: for a surface that is there.
                pygame.Surface((8, 6), 0, 32).blit(plain, (0, 0))
                expected = use(plain.copy())
                for made in (result, expected):
                    made.set_alpha(255)
                assert pixels(result) == pixels(expected)
        """)
    )
