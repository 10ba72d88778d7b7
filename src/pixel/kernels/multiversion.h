#pragma once

/// Put before the definition of a kernel, whose loops are then compiled once per dispatch level, a
/// generation of x86-64 processors; the loader binds the highest level that the processor runs. The
/// function stays a plain loop on integers: all levels come from one source and give the same bits.
/// Compilers and processors without the attribute build the plain function alone.
///
/// The compiler makes the chooser of such a function visible to every library, whatever visibility
/// it was given; the module's linker script hides it again.
///
/// Sanitizer builds have the plain function too: the loader asks for the level before the sanitizer
/// is set up, and the asking itself is instrumented. LARKSPUR_SINGLE_TARGET asks for the plain
/// function by hand: the native tests compile the kernels for each dispatch level on its own.
/// LARKSPUR_HAS_VERSIONS is 1 where there is more than that one, else 0.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12 && \
    !defined(__SANITIZE_ADDRESS__) && !defined(LARKSPUR_SINGLE_TARGET)
#define LARKSPUR_MULTIVERSION \
    __attribute__((target_clones("default", "arch=x86-64-v2", "arch=x86-64-v3", "arch=x86-64-v4")))
#define LARKSPUR_HAS_VERSIONS 1
#else
#define LARKSPUR_MULTIVERSION
#define LARKSPUR_HAS_VERSIONS 0
#endif
