// Beancounter: counts the living particles that it is attached to.
#pragma once

#include "core/python.h"

namespace larkspur {

struct BeancounterObject {
    PyObject_HEAD;
    long count;  // particles that hold this counter
};

/// "larkspur.Beancounter": made with a count of 0, whatever the arguments; int() gives the count.
extern PyTypeObject beancounter_type;

}  // namespace larkspur
