"""A game without sense or manners: random steps on rooms, lists, variables, particles and caches,
while host code raises, collects garbage, closes or replaces the display, swaps lists, draws once
more or returns what it should not. What can be foretold is held against models.

chunks.py says how it is called.
"""

import gc
import operator
import os
import sys
import weakref

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

from support import host as host_support

host_support.install_modules()

import chunks  # noqa: E402
import larkspur  # noqa: E402
import numpy  # noqa: E402
import pygame  # noqa: E402
from hostile import NAN, NUMBERS, WRONG, Key, Mischief, Number, left_behind, outcome  # noqa: E402
from models import particle_model  # noqa: E402
from models.instance_list_model import ModelList  # noqa: E402
from models.variable_model import ModelVariable, Refused  # noqa: E402
from support import particles, records, rooms, sprites  # noqa: E402
from support.leaks import lend_references  # noqa: E402

# Comparisons and insertions release references that they never took; the objects that they meet
# get more of them than a chunk can use up.
LENT = 10**7

# How many numbers each setter of a particle type takes, and which of them take integers.
SETTERS = {
    "alpha3": 3,
    "blend": 1,
    "color3": 3,
    "gravity": 2,
    "life": 2,
    "orientation": 5,
    "scale": 2,
    "size": 4,
}
INTEGER_SETTERS = ("blend", "color3")

HOSTILE_FUNCTIONS = [
    name
    for name in dir(larkspur)
    if name.startswith(("part_type", "CParticle", "fast_draw", "fill", "draw_rect", "scale"))
    or name.startswith(("rotoscale", "flip"))
]


def draw_room(room, surface):
    """Room_Draw(), which may succeed and leave an exception of a view behind."""
    try:
        larkspur.Room_Draw(room, surface)
    except Exception as error:
        return type(error)
    return left_behind()


class World(chunks.Steps):
    def __init__(self, random):
        chunks.Steps.__init__(self, random)
        self.depth = 0
        self.watched = []
        pygame.display.init()
        self.display = pygame.display.set_mode((160, 120), 0, 32)
        larkspur.set_SDL_screen(self.display)
        self.host = host_support.RecordingHost(self.display)
        for name in host_support.ROOM_FUNCTIONS + host_support.LOADERS:
            setattr(self.host.gm6, name, self.host_function)
        self.host.gmapi.draw_sprite_ext = self.host_function
        self.host.gmapi.misbehave = self.misbehave
        self.host.register(larkspur)
        for number in range(20):
            self.host.registry[number] = host_support.Instance(number=number)
            lend_references(self.host.registry[number], LENT)
        self.instance_lists = [
            (larkspur.InstanceList(), ModelList(self.host.registry, host_support.Instance))
            for _ in range(3)
        ]
        self.values = [float(i) + 0.25 for i in range(10)] + ["value %d" % i for i in range(10)]
        for value in self.values:
            lend_references(value, LENT)
        self.variables = [self.new_variable() for _ in range(4)]
        self.floats = [(larkspur.Floatlist8(), [0.0] * 8)]
        self.new_float_list()
        self.types = [self.new_type() for _ in range(3)]
        self.particles = []
        self.beans = [(larkspur.Beancounter(), []) for _ in range(2)]
        self.sprites = [self.new_sprite() for _ in range(3)]
        self.room = rooms.make_room()
        self.new_room()

    def step(self, note):
        if not pygame.display.get_init() or self.random.randrange(200) == 0:
            note("open_display")
            self.open_display()
        chunks.Steps.step(self, note)

    def check(self, condition, *context):
        if not condition:
            raise AssertionError(repr(context))

    # --- Misbehaviour ----------------------------------------------------------------------------

    def misbehave(self, *_):
        """What host code does when it is called: as a rule nothing."""
        if self.random.randrange(3) or self.depth > 3:
            return None
        self.depth += 1
        try:
            return self.random.choice(
                [
                    self.raise_mischief,
                    gc.collect,
                    self.open_display,
                    self.close_display,
                    self.swap_lists,
                    self.new_room,
                    self.drop_particles,
                    self.draw_again,
                    self.clear_caches,
                    lambda: self.random.choice(WRONG),
                    self.refill_surface,
                ]
            )()
        finally:
            self.depth -= 1

    def host_function(self, *_):
        return self.misbehave()

    def misbehave_quietly(self, *_):
        try:
            self.misbehave()
        except Mischief:
            pass

    def raise_mischief(self):
        raise Mischief

    def open_display(self):
        size = self.random.choice([(160, 120), (64, 64), (200, 40)])
        pygame.display.init()
        self.display = pygame.display.set_mode(size, 0, self.random.choice([32, 32, 32, 16, 8]))
        if self.random.randrange(4):
            # Something that died meanwhile may have closed it.
            outcome(larkspur.set_SDL_screen, self.display)

    def close_display(self):
        pygame.display.quit()

    def swap_lists(self):
        name = self.random.choice(["tiles", "drawn_objects", "view_visible"])
        old = getattr(self.room, name)
        if self.random.randrange(2):
            setattr(
                self.room,
                name,
                self.random.choice([[], None, old, [1, 2], larkspur.InstanceList()]),
            )
        elif isinstance(old, list):
            del old[self.random.randrange(3) :]

    def drop_particles(self):
        del self.particles[:]
        for _, holders in self.beans:
            del holders[:]

    def draw_again(self):
        return draw_room(self.room, self.any_surface())

    def clear_caches(self):
        for handle, _ in self.types:
            larkspur.CParticle_type_cache_clear(handle)
        for sprite in self.sprites:
            sprite.scalecache = {}

    def refill_surface(self):
        surface = self.any_surface()
        surface.fill(self.random.randrange(2**24))

    def watch(self, thing):
        """Something happens when a thing dies."""
        self.watched = self.watched[-20:] + [weakref.ref(thing, self.misbehave_quietly)]

    # --- Things ----------------------------------------------------------------------------------

    def any_surface(self):
        """The display, a picture of any depth, a piece of one, an encoded or a locked one."""
        kind = self.random.randrange(8)
        if kind < 3 and pygame.display.get_surface() is not None:
            surface = pygame.display.get_surface()
        else:
            size = self.random.choice([(1, 1), (16, 16), (33, 7), (100, 60), (0, 5)])
            depth = self.random.choice([8, 15, 16, 24, 32, 32, 32])
            flags = pygame.SRCALPHA if depth == 32 and self.random.randrange(2) else 0
            surface = pygame.Surface(size, flags, depth)
            surface.fill(self.random.randrange(2**24))
        if kind == 4 and surface.get_width() > 3 and surface.get_height() > 3:
            surface = surface.subsurface((1, 1, surface.get_width() - 2, surface.get_height() - 2))
        if kind == 5:
            surface.set_colorkey(self.random.randrange(256), pygame.RLEACCEL)
        if kind == 6:
            surface.set_alpha(self.random.randrange(256))
        if self.random.randrange(10) == 0:
            self.watch(surface)
        return surface

    def any_number(self):
        """For an argument: mostly a number, also one that misbehaves, or none."""
        kind = self.random.randrange(20)
        if kind == 0:
            return self.random.choice(WRONG)
        if kind == 1:
            return Number(self.random.randrange(-5, 40), self.misbehave)
        if kind < 8:
            return self.random.choice(NUMBERS)
        return self.random.randrange(-40, 200)

    def any_float(self):
        number = self.any_number()
        return number if isinstance(number, Number) else self.random.uniform(-4, 40)

    def new_variable(self):
        value = self.random.choice(self.values)
        return larkspur.GMVar(value), ModelVariable(value)

    def new_float_list(self):
        values = [self.random.choice(NUMBERS) for _ in range(8)]
        self.floats = self.floats[-3:] + [(rooms.float_list(values), values)]

    def new_type(self):
        """A type that follows its model, as no setter fails."""
        handle, model = larkspur.part_type_create(), particle_model.TypeModel()
        between = self.random.uniform
        for name, arguments in (
            ("size", [between(-1, 4), between(-1, 4), between(-0.5, 0.5), between(-0.5, 0.5)]),
            ("speed", [between(-3, 9) for _ in range(4)]),
            ("direction", [between(-400, 400) for _ in range(4)]),
            ("life", [between(-5, 90), between(-5, 90)]),
            ("color3", [self.random.randrange(-(2**31), 2**31) for _ in range(3)]),
        ):
            getattr(larkspur, "part_type_" + name)(handle, *arguments)
            getattr(model, "part_type_" + name)(*arguments)
        return handle, model

    def new_sprite(self):
        sprite = sprites.sprite_of(self.any_surface(), self.any_surface())
        sprite.scalecache = {}
        sprite.name = "sprite"
        return sprite

    def new_room(self):
        room = (rooms.make_view_room if self.random.randrange(2) else rooms.make_room)()
        room.tiles = [
            rooms.make_tile(
                self.random.randrange(-40, 160),
                self.random.randrange(-40, 160),
                self.random.choice([0, 0, 1, 2, 3, -1]),
            )
            for _ in range(4)
        ]
        room.drawn_objects = [self.new_drawn() for _ in range(5)]
        self.host.game.backgrounds = [rooms.make_background(self.any_surface()) for _ in range(3)]
        self.room = room

    def new_drawn(self):
        kind = self.random.randrange(4)
        if kind == 0:
            return rooms.Drawable([], "drawn", self.misbehave)
        if kind == 1:
            return host_support.ParticleSystem()
        if kind == 2:
            return self.random.choice(WRONG)
        code = self.random.choice([1, None, rooms.compiled("misbehave()"), "misbehave()", 5.0])
        instance = rooms.make_instance(py_Draw=code, sprite_index=0, x=3, y=4)
        instance.Draw = self.misbehave
        return instance

    # --- Steps -----------------------------------------------------------------------------------

    def step_instance_list(self):
        target, model = self.random.choice(self.instance_lists)
        number = self.random.randrange(24)
        argument = self.random.choice(
            [
                number,
                self.host.registry.get(number, number),
                larkspur.GMVar(number),
                float(number),
                None,
                "text",
            ]
        )
        if isinstance(argument, (larkspur.GMVar, float)):
            lend_references(argument, 1)
        i = self.random.randrange(-8, 8)
        slicing = len(model.items) > 30
        name, arguments, action = self.random.choice(
            [
                ("append", (argument,), target.append),
                ("insert", (i, argument), target.insert),
                ("remove", (argument,), target.remove),
                ("set", (i, argument), lambda i, value: operator.setitem(target, i, value)),
                ("delete", (i,), lambda i: operator.delitem(target, i)),
                ("pop", (i,), target.pop),
            ]
        )
        if slicing:
            name, arguments = "slice", (0, None)
            action = lambda i, value: operator.setslice(target, 0, 5, [])  # noqa: E731
        expected = outcome(getattr(model, name), *arguments)
        actual = outcome(action, *arguments)
        self.check(actual is expected, name, arguments, actual, expected)
        self.check(list(target) == model.items, name, arguments)

    def step_instance_list_with_mischief(self):
        """Changes of a list that change it on the way: nothing is foretold."""
        target, model = self.random.choice(self.instance_lists)

        def act():
            self.misbehave()
            if self.random.randrange(2):
                del target[:]

        value = Number(self.random.randrange(24), act)
        lend_references(value, 2)
        action = self.random.choice(
            [
                target.append,
                target.remove,
                lambda value: target.insert(1, value),
                lambda value: operator.setitem(target, 0, value),
                lambda value: target.extend([value]),
                lambda value: operator.contains(target, value),
            ]
        )
        outcome(action, value)
        model.items = [item for item in target if isinstance(item, host_support.Instance)]
        target[:] = model.items

    def step_variable(self):
        variable, model = self.random.choice(self.variables)
        index = lambda: self.random.choice([self.random.randrange(-1, 6), 2.5, 1])  # noqa: E731
        key = self.random.choice([index(), (index(), index()), [index(), index()], None, "ab", ()])
        value = self.random.choice(self.values)
        if self.random.randrange(2):
            expected = outcome(model.read, key)
            actual = outcome(operator.getitem, variable, key)
        else:
            expected = outcome(model.write, key, value)
            actual = outcome(operator.setitem, variable, key, value)
        expected = SystemError if expected is Refused else expected
        self.check(actual is expected or actual == expected, key, actual, expected)

    def step_variable_anew(self):
        place = self.random.randrange(len(self.variables))
        variable, _ = self.variables[place]
        value = self.random.choice(self.values)
        way = self.random.randrange(3)
        if way == 0:
            self.variables[place] = self.new_variable()
        elif way == 1:
            larkspur.GMVar.__init__(variable, value)
            self.variables[place] = variable, ModelVariable(value)
        else:
            records.clear(variable)
            larkspur.GMVar.__init__(variable, value)
            self.variables[place] = variable, ModelVariable(value)

    def step_compare_variables(self):
        alike = self.random.choice([self.values[:10], self.values[10:]])
        a, b = self.random.choice(alike), self.random.choice(alike)
        expected = cmp(a, b)
        self.check(cmp(larkspur.GMVar(a), larkspur.GMVar(b)) == expected, a, b)
        self.check(cmp(larkspur.GMVar(a), b) == expected, a, b)

    def step_variable_with_mischief(self):
        variable, _ = self.random.choice(self.variables)
        other = self.random.choice([Number(3, self.misbehave), variable] + WRONG)
        lend_references(other, LENT)
        apply = self.random.choice(
            [operator.add, operator.sub, operator.mul, operator.div, operator.getitem, cmp]
        )
        outcome(apply, larkspur.GMVar(other), other)
        outcome(repr, variable)
        outcome(float, larkspur.GMVar(other))

    def step_float_list(self):
        floats, values = self.random.choice(self.floats)
        i = self.random.randrange(8)
        values[i] = self.random.choice(NUMBERS)
        floats[i] = values[i]
        self.check(repr(list(floats)) == repr(values), list(floats), values)
        outcome(operator.add, floats, Number(2, self.misbehave))
        outcome(operator.setitem, floats, i, Number(5, self.misbehave))
        values[:] = list(floats)

    def step_new_float_list(self):
        self.new_float_list()

    def step_state(self):
        """A record takes the state of another one."""
        record = self.random.choice(
            [self.room, self.sprites[0], rooms.make_tile(), self.floats[0][0]]
        )
        outcome(lambda: type(record)().__setstate__(record.__reduce__()[2]))

    def step_new_particle(self):
        handle, kind = self.random.choice(self.types)
        seed = self.random.randrange(2**31)
        particles.seed(seed)
        x, y = self.random.uniform(-100, 200), self.random.uniform(-100, 200)
        particle = larkspur.CParticle_new(handle, x, y)
        model = particle_model.ParticleModel(kind, x, y, particle_model.Drand48(seed))
        self.particles = self.particles[-60:] + [(particle, model, kind)]
        if self.random.randrange(3) == 0:
            counter, holders = self.random.choice(self.beans)
            larkspur.CParticle_attach_beancounter(particle, counter)
            holders.append(particle)

    def step_particle(self):
        if not self.particles:
            return
        particle, model, kind = self.random.choice(self.particles)
        seed = self.random.randrange(2**31)
        particles.seed(seed)
        with numpy.errstate(all="ignore"):
            expected = model.step(kind, particle_model.Drand48(seed))
        self.check(larkspur.CParticle_step(particle) == expected)
        actual = particles.values(particles.particle_record(particle))
        self.check(
            repr(sorted(actual.items())) == repr(sorted(particles.values_of_model(model).items()))
        )

    def step_drop_particle(self):
        if self.particles:
            particle = self.particles.pop(self.random.randrange(len(self.particles)))[0]
            for _, holders in self.beans:
                if particle in holders:
                    holders.remove(particle)

    def step_beans(self):
        """A counter tells how many particles hold it. Those that are dropped from the list of
        particles may still be in that of holders, which counts."""
        for counter, holders in self.beans:
            self.check(int(counter) == len(holders), int(counter), len(holders))
            del holders[:-20]

    def step_hold_shape(self):
        handle = self.random.choice(self.types)[0]
        outcome(larkspur.part_type_shape, handle, self.any_surface())

    def step_render(self):
        """A particle of a type that no other step sets, so that the models stay true."""
        handle = larkspur.part_type_create()
        larkspur.part_type_shape(handle, self.any_surface())
        rare = self.random.randrange(60) == 0
        for name, count in SETTERS.items():
            # Pictures of the largest size that is allowed take seconds, so few are asked for.
            any_number = self.any_float if rare else lambda: self.random.uniform(-1, 3)
            numbers = [any_number() for _ in range(count)]
            if name in INTEGER_SETTERS:
                numbers = [self.random.randrange(256) for _ in range(count)]
            outcome(getattr(larkspur, "part_type_" + name), handle, *numbers)
        for _ in range(4):
            size = self.random.choice([0.0, 0.3, 1.0, 3.0, NAN, -1.0])
            colour = self.random.randrange(2**24)
            particle = larkspur.CParticle_new_size_color(handle, 20, 20, size, colour)
            x = self.random.randrange(-9, 9)
            outcome(larkspur.CParticle_dec_ttl_and_render, particle, x, 0)
        for picture in particles.cache_of(handle).values():
            self.check(picture is not None)

    def step_hostile_arguments(self):
        name = self.random.choice(HOSTILE_FUNCTIONS)
        pool = [self.any_number, self.any_surface, lambda: self.types[0][0], lambda: self.room]
        arguments = [self.random.choice(pool)() for _ in range(self.random.randrange(9))]
        if self.random.randrange(2):
            arguments = [self.any_surface()] + [self.any_float() for _ in arguments]
        if arguments and arguments[0] is self.types[0][0]:
            self.types[0] = self.new_type()
            self.particles = []
            for _, holders in self.beans:
                del holders[:]
        outcome(getattr(larkspur, name), *arguments)

    def step_scale_cache(self):
        sprite = self.random.choice(self.sprites)
        key = self.random.choice([("key", self.random.randrange(5)), Key(self.misbehave)])
        size = lambda: self.random.choice([-20, -1, 0, 1, 16, 40])  # noqa: E731
        outcome(
            sprites.scale_cache_add,
            sprite,
            key,
            self.random.randrange(2),
            size(),
            size(),
            self.random.choice([0, 30, 90]),
            5,
            self.random.choice([0xFFFFFF, 0x1020]),
            self.random.randrange(256),
            self.random.randrange(2),
        )

    def step_new_sprite(self):
        self.sprites[self.random.randrange(3)] = self.new_sprite()

    def step_room(self):
        if self.random.randrange(3) == 0:
            self.new_room()
        draw_room(self.room, self.any_surface())

    def step_ordered_room(self):
        """Without mischief each object is drawn once, in order."""
        log = []
        room = rooms.make_room(drawn_objects=[rooms.Drawable(log, i) for i in range(5)])
        depth, self.depth = self.depth, 9
        try:
            larkspur.Room_Draw(room, pygame.Surface((8, 8), 0, 32))
        finally:
            self.depth = depth
        self.check(log == list(range(5)), log)

    def step_room_methods(self):
        methods = [name for name in dir(larkspur.GMRoom) if name[0].isupper()]
        arguments = [self.any_number() for _ in range(self.random.randrange(3))]
        outcome(getattr(self.room, self.random.choice(methods)), *arguments)

    def step_members(self):
        record = self.random.choice([self.room] + self.sprites + [rooms.make_tile()])
        name = self.random.choice([name for name in dir(record) if not name.startswith("__")])
        value = self.random.choice([self.any_number(), self.any_surface(), [], self.floats[0][0]])
        if self.random.randrange(4):
            outcome(setattr, record, name, value)
        else:
            outcome(delattr, record, name)

    def step_draw_sprite(self):
        instance = rooms.make_instance(
            x=self.any_number(), y=self.any_number(), sprite_index=self.any_number()
        )
        arguments = [instance, self.any_number()][: self.random.randrange(3)]
        outcome(larkspur.draw_sprite_ext, *arguments)

    def step_collect(self):
        if self.random.randrange(20) == 0:
            gc.collect()


if __name__ == "__main__":
    chunks.main(World, os.path.abspath(__file__))
