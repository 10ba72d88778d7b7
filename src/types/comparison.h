// Comparison by integer value, which identifies the game's resources and tiles. The left operand is
// always one of them, so it converts to a plain int; the right one may be anything.
#pragma once

#include "core/python.h"

namespace larkspur {

/// A new reference to True or False.
inline PyObject* truth(bool flag) noexcept {
    PyObject* answer = flag ? Py_True : Py_False;
    Py_INCREF(answer);
    return answer;
}

/// The truth of `a op b`, with op one of the interpreter's Py_LT to Py_GE: a new reference to True
/// or False; null without an exception for any other op.
template <typename Number>
PyObject* compared(Number a, Number b, int op) noexcept {
    switch (op) {
        case Py_LT:
            return truth(a < b);
        case Py_LE:
            return truth(a <= b);
        case Py_EQ:
            return truth(a == b);
        case Py_NE:
            return truth(a != b);
        case Py_GT:
            return truth(a > b);
        case Py_GE:
            return truth(a >= b);
        default:
            return nullptr;
    }
}

/// tp_compare of backgrounds, rooms and tiles: compares what the operands convert to. The
/// interpreter calls it for any two objects whose types share it, so a background can be compared
/// with a room; GMVar calls it with any right operand.
///
/// @return -1, 0 or 1; -1 as well when an operand does not convert, with a line on standard error
///         and the conversion's exception, if it set one
int compare_as_int(PyObject* a, PyObject* b) noexcept;

/// tp_richcompare of sprites: True or False, after the operands' integer values cut to signed 32
/// bits. Null with the conversion's exception, if it set one, when an operand does not convert, and
/// null without an exception for an unknown operator.
PyObject* richcompare_as_int(PyObject* a, PyObject* b, int op) noexcept;

}  // namespace larkspur
