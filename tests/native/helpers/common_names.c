/* Preloaded, this library offers other functions under common words that are among larkspur's
 * exported names, to prove that larkspur calls its own. Each says that it was called. */
#include <stddef.h>

int foreign_calls = 0;

static int called(void) {
    ++foreign_calls;
    return 0;
}

int debug(const char* format) {
    (void)format;
    return called();
}

int dump(const char* message) {
    (void)message;
    return called();
}

void* invoke(void* callable, void* argument) {
    (void)callable;
    (void)argument;
    called();
    return NULL;
}

unsigned blend(unsigned a, unsigned b, int weight) {
    (void)a;
    (void)b;
    (void)weight;
    return (unsigned)called();
}
