/* Loaded before the interpreter when the tests run under LeakSanitizer.
 *
 * The interpreter keeps small objects in arenas that it maps itself, and the leak checker does not
 * look for pointers there: whatever is reached only through such an object (the pixels of a
 * Surface, the array of a list, a particle's record) would count as lost. So the arenas are noted
 * as they come and go, and register_arena_roots(), called right before a check, makes them places
 * where the search for pointers begins.
 *
 * They can't be registered as they come: the checker itself maps memory, holding its own lock.
 */
#define _GNU_SOURCE
#include <pthread.h>
#include <stddef.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

/* ARENA_SIZE of Objects/obmalloc.c. */
static const size_t kArenaBytes = 256 << 10;

enum { kMostArenas = 1 << 16 };
static void* arenas[kMostArenas];
static size_t arena_count = 0;
static pthread_mutex_t arenas_mutex = PTHREAD_MUTEX_INITIALIZER;

extern void __lsan_register_root_region(const void* start, size_t size);

void* mmap(void* address, size_t length, int protection, int flags, int descriptor, off_t offset) {
    void* start = (void*)syscall(SYS_mmap, address, length, protection, flags, descriptor, offset);
    if (start != MAP_FAILED && length == kArenaBytes && descriptor == -1) {
        pthread_mutex_lock(&arenas_mutex);
        if (arena_count < kMostArenas) {
            arenas[arena_count++] = start;
        }
        pthread_mutex_unlock(&arenas_mutex);
    }
    return start;
}

/* What the interpreter calls where it is compiled for large files. */
void* mmap64(void* address, size_t length, int protection, int flags, int descriptor,
             off_t offset) {
    return mmap(address, length, protection, flags, descriptor, offset);
}

int munmap(void* address, size_t length) {
    pthread_mutex_lock(&arenas_mutex);
    for (size_t i = 0; length == kArenaBytes && i < arena_count; i++) {
        if (arenas[i] == address) {
            arenas[i] = arenas[--arena_count];
            break;
        }
    }
    pthread_mutex_unlock(&arenas_mutex);
    return (int)syscall(SYS_munmap, address, length);
}

/* To be called once in a process: what is registered stays so. Gives the number of arenas. */
size_t register_arena_roots(void) {
    pthread_mutex_lock(&arenas_mutex);
    for (size_t i = 0; i < arena_count; i++) {
        __lsan_register_root_region(arenas[i], kArenaBytes);
    }
    size_t registered = arena_count;
    pthread_mutex_unlock(&arenas_mutex);
    return registered;
}
