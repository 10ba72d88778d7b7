#include "as_c.c"
