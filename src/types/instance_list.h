// InstanceList: a list of game instances that also takes an instance's id, or a variable holding
// either, wherever one instance is added, and always stores the instance.
#pragma once

#include "core/python.h"

namespace larkspur {

/// A subtype of the interpreter's list with exactly a list's storage. What adds several values at
/// once (extending, slices, unpickling) is the list's own and converts nothing.
extern PyTypeObject instance_list_type;

/// Makes the type a subtype of list; before it is readied.
void prepare_instance_list_type() noexcept;

}  // namespace larkspur
