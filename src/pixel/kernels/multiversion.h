#pragma once

/// Put before the definition of a function whose loops shall be compiled once per generation of
/// x86-64 processors; the loader binds the newest copy that the processor runs. The function stays
/// a plain loop on integers: all copies come from one source and give the same bits. Compilers and
/// processors without the attribute build the plain function alone.
///
/// The function must stand in an unnamed namespace, behind an ordinary function that forwards to
/// it: the compiler makes the chooser of any other function visible outside the module, whatever
/// visibility it was given.
///
/// Sanitizer builds have the plain function too: the loader asks for the copy before the sanitizer
/// is set up, and the asking itself is instrumented. LARKSPUR_SINGLE_TARGET asks for the plain
/// function by hand: the native tests compile the kernels for each processor on its own.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12 && \
    !defined(__SANITIZE_ADDRESS__) && !defined(LARKSPUR_SINGLE_TARGET)
#define LARKSPUR_MULTIVERSION \
    __attribute__((target_clones("default", "arch=x86-64-v2", "arch=x86-64-v3", "arch=x86-64-v4")))
#else
#define LARKSPUR_MULTIVERSION
#endif
