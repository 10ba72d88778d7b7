"""Beancounter: how many living particles hold it."""

import sys

import larkspur
import pytest
from support import leaks, particles


def new_particle():
    return larkspur.CParticle_new(larkspur.part_type_create(), 0, 0)


def test_name_doc_and_first_count():
    assert larkspur.Beancounter.__name__ == "Beancounter"
    assert repr(larkspur.Beancounter) == "<type 'larkspur.Beancounter'>"
    assert larkspur.Beancounter.__doc__ == "A counter."
    assert int(larkspur.Beancounter()) == 0
    assert type(int(larkspur.Beancounter())) is int


def test_has_nothing_but_its_integer_value():
    own = set(vars(larkspur.Beancounter)) - {"__doc__", "__new__"}
    assert own == {"__int__"}
    with pytest.raises(TypeError):
        float(larkspur.Beancounter())
    with pytest.raises(AttributeError):
        larkspur.Beancounter().count = 1


def test_cannot_be_subclassed():
    with pytest.raises(TypeError):
        type("Sub", (larkspur.Beancounter,), {})


def test_attaching_raises_and_the_particles_end_lowers():
    counter = larkspur.Beancounter()
    living = [new_particle() for _ in range(3)]
    for number, particle in enumerate(living):
        assert larkspur.CParticle_attach_beancounter(particle, counter) is None
        assert int(counter) == number + 1
    del particle
    while living:
        living.pop()
        assert int(counter) == len(living)


def test_second_counter_takes_over():
    first, second = larkspur.Beancounter(), larkspur.Beancounter()
    particle = new_particle()
    larkspur.CParticle_attach_beancounter(particle, first)
    larkspur.CParticle_attach_beancounter(particle, second)
    assert (int(first), int(second)) == (0, 1)
    assert particles.particle_record(particle).beancounter == id(second)
    del particle
    assert (int(first), int(second)) == (0, 0)


def test_attaching_the_same_counter_again_changes_nothing():
    counter = larkspur.Beancounter()
    particle = new_particle()
    larkspur.CParticle_attach_beancounter(particle, counter)
    leaks.assert_counts_unchanged(
        lambda: larkspur.CParticle_attach_beancounter(particle, counter), counter, particle
    )
    assert int(counter) == 1


def test_particle_keeps_its_counter_alive():
    particle, counter = new_particle(), larkspur.Beancounter()
    before = sys.getrefcount(counter)
    larkspur.CParticle_attach_beancounter(particle, counter)
    assert sys.getrefcount(counter) == before + 1
    larkspur.CParticle_attach_beancounter(particle, larkspur.Beancounter())
    assert sys.getrefcount(counter) == before


@pytest.mark.parametrize("wrong", [None, 1, object(), larkspur.Beancounter])
def test_what_is_no_counter_is_refused_and_the_old_one_stays(wrong):
    counter = larkspur.Beancounter()
    particle = new_particle()
    larkspur.CParticle_attach_beancounter(particle, counter)
    with pytest.raises(TypeError) as failure:
        larkspur.CParticle_attach_beancounter(particle, wrong)
    assert "CParticle_attach_beancounter() needs a Beancounter, got " in str(failure.value)
    assert int(counter) == 1
    assert particles.particle_record(particle).beancounter == id(counter)


def test_counters_do_not_leak():
    def life():
        counter = larkspur.Beancounter()
        particle = new_particle()
        larkspur.CParticle_attach_beancounter(particle, counter)

    assert leaks.object_growth(life) == 0
    leaks.assert_counts_unchanged(life, larkspur.Beancounter)
