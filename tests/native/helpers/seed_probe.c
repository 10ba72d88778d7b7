/* Preloaded, this library decides what the random seed is made of, and writes the seed down. Only
 * 4-byte reads of "/dev/urandom" are touched: the interpreter reads it in other portions. */
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#include <dlfcn.h>
#include <fcntl.h>
#include <stdarg.h>
#include <string.h>
#include <sys/types.h>
#include <unistd.h>

int fake_entropy = 0;
int fake_process = 0;
int fake_parent = 0;
int refuses_urandom = 0;

int seed_calls = 0;
long seed_value = 0;
int open_sources = 0;

static int source = -1;

int open(const char* path, int flags, ...) {
    int (*real)(const char*, int, ...) = (int (*)(const char*, int, ...))dlsym(RTLD_NEXT, "open");
    va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;
    va_end(arguments);
    const int is_source = strcmp(path, "/dev/urandom") == 0;
    if (is_source && refuses_urandom) {
        return -1;
    }
    const int descriptor = real(path, flags, mode);
    if (is_source) {
        source = descriptor;
        ++open_sources;
    }
    return descriptor;
}

int close(int descriptor) {
    int (*real)(int) = (int (*)(int))dlsym(RTLD_NEXT, "close");
    if (descriptor == source && descriptor >= 0) {
        source = -1;
        --open_sources;
    }
    return real(descriptor);
}

ssize_t read(int descriptor, void* buffer, size_t count) {
    ssize_t (*real)(int, void*, size_t) = (ssize_t(*)(int, void*, size_t))dlsym(RTLD_NEXT, "read");
    if (descriptor == source && descriptor >= 0 && count == sizeof fake_entropy && fake_entropy) {
        memcpy(buffer, &fake_entropy, count);
        return (ssize_t)count;
    }
    return real(descriptor, buffer, count);
}

pid_t getpid(void) {
    pid_t (*real)(void) = (pid_t(*)(void))dlsym(RTLD_NEXT, "getpid");
    return fake_process != 0 ? fake_process : real();
}

pid_t getppid(void) {
    pid_t (*real)(void) = (pid_t(*)(void))dlsym(RTLD_NEXT, "getppid");
    return fake_parent != 0 ? fake_parent : real();
}

void srand48(long seed) {
    void (*real)(long) = (void (*)(long))dlsym(RTLD_NEXT, "srand48");
    ++seed_calls;
    seed_value = seed;
    real(seed);
}
