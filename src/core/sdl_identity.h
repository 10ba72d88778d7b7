// Which SDL pygame uses. Surfaces can be shared with it only when it is the one that larkspur is
// linked with.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Checks that the shared object which holds `address`, an extension module of pygame, uses
/// larkspur's SDL. Otherwise false with a RuntimeError that names both libraries, their versions
/// and files, and the command that mends it.
///
/// Found out through the libraries that the shared object was linked with; where none of them is an
/// SDL, by the version that pygame tells. True when nothing can be found out.
///
/// @param address anything, such as a table of the module; it is not read
bool require_our_sdl(const void* address) noexcept;

}  // namespace larkspur
