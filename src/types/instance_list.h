// InstanceList: a list of game instances that also takes an instance's id, or a variable holding
// either, wherever one instance is added, and always stores the instance.
//
// Reference counts that are out of balance, beside the list's own references; an engine has to
// reckon with them:
//   append(id), remove(id)    the instance loses one that nobody took, found or not
//   insert(i, v)              v loses one, whatever is inserted for it, unless v is the instance;
//                             an instance out of a variable gains one
//   list[i] = instance        the instance gains one for good
// What is lost never includes an object's last reference, nor any of an object that the interpreter
// shares, as small ints (see release_unowned()); any other holder of the object can be left with
// one that is gone. Passing instances to append() and remove() keeps all counts even.
#pragma once

#include "core/python.h"

namespace larkspur {

/// A subtype of the interpreter's list with exactly a list's storage. What adds several values at
/// once (extending, slices, unpickling) is the list's own and converts nothing.
extern PyTypeObject instance_list_type;

/// Makes the type a subtype of list; before it is readied.
void prepare_instance_list_type() noexcept;

}  // namespace larkspur
