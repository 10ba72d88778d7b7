"""Bad input of every kind for everything that larkspur shows to Python and to native callers.

scene       the world a call is made in: a display, a host, a room
hostile     objects whose special methods misbehave
values      all values that take an argument's place
table       what is called, with which arguments, and what is to come of it
operations  what is to come of operators and built-in functions
runner      makes the calls, each where it can do no harm; `python -m robustness.runner` by hand
"""
