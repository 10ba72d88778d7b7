/* Preloaded, this library's time() stands in the place of the system's: it says what a test put
 * into clock_seconds. */
#include <time.h>

time_t clock_seconds = 0;

time_t time(time_t* result) {
    if (result != NULL) {
        *result = clock_seconds;
    }
    return clock_seconds;
}
