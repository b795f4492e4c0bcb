#pragma once

/// Compiles a function, with all that it calls, for processors with AVX2 as well; which one runs is decided when the
/// program starts. The arithmetic is the same (no fused operations), and so is every sample.
#if defined(__x86_64__) && defined(__linux__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__)
#define ORVEL_WIDE_VECTORS [[gnu::flatten, gnu::target_clones("avx2", "default")]]
#else
#define ORVEL_WIDE_VECTORS
#endif
