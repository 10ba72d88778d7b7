#include "record_places.h"
