import larkspur
from support import leaks


def test_new_backgrounds_have_no_name_no_image_and_an_empty_cache():
    background = larkspur.BackgroundData("any", arguments=1)
    assert (background.name, background.surf) == (None, None)
    assert background.scaled_data_cache == {}
    assert type(background.scaled_data_cache) is dict
    assert background.scaled_data_cache is not larkspur.BackgroundData().scaled_data_cache
    assert (background.w, background.h, background.transparent) == (0, 0, 0)


def test_state_holds_name_and_transparency_only():
    background = larkspur.BackgroundData()
    background.name, background.transparent = "bg_sky", 1
    background.w, background.h, background.surf = 640, 480, "an image"
    expected = (larkspur.BackgroundData, (), ("bg_sky", 1))
    assert background.__reduce__() == expected
    assert background.__reduce__("any", "arguments") == expected


def test_pickling_leaves_the_caches():
    background = larkspur.BackgroundData()
    background.surf, background.scaled_data_cache = "an image", {"key": "scaled"}
    background.__reduce__()
    assert background.surf == "an image"
    assert background.scaled_data_cache == {"key": "scaled"}


def test_setstate_leaves_the_size_to_the_host(host):
    background = larkspur.BackgroundData()
    background.w, background.h = 7, 8
    background.surf, background.scaled_data_cache = "an image", {"key": "scaled"}
    background.__setstate__(("bg_sky", 1))
    assert (background.w, background.h) == (7, 8)
    assert (background.surf, background.scaled_data_cache) == (None, {})


def test_pickling_keeps_the_counts():
    background = larkspur.BackgroundData()
    background.name = name = object()
    leaks.assert_counts_unchanged(background.__reduce__, background, name, larkspur.BackgroundData)
