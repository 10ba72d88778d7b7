// The one way in which the interpreter's headers enter a unit: include this file first.
#pragma once

#define PY_SSIZE_T_CLEAN

// Python 2.7's headers still say `register`, which C++17 no longer knows.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wregister"
#include <Python.h>
#include <structmember.h>
#pragma GCC diagnostic pop

#if PY_MAJOR_VERSION != 2 || PY_MINOR_VERSION != 7
#error "larkspur is built for Python 2.7: choose its interpreter with -DPython2_EXECUTABLE"
#endif
