// The names that native callers of the module see, for the units that define or read them. Their
// contracts stand in the public header; this one only lets it meet the interpreter's and SDL's own
// types.
#pragma once

#include "core/python.h"

#include <SDL.h>

#include "larkspur.h"
