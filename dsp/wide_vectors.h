#pragma once

/// Compiles a function, with all that it calls, for processors with AVX2 as well; which one runs is decided when the
/// program starts. The arithmetic is the same (no fused operations), and so is every sample. The build knows whether
/// compiler and system can do that.
#ifdef ORVEL_HAS_TARGET_CLONES
#define ORVEL_WIDE_VECTORS [[gnu::flatten, gnu::target_clones("avx2", "default")]]
#else
#define ORVEL_WIDE_VECTORS
#endif
