#include "dsp/denormals.h"

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace orvel {

#ifdef __SSE2__

NoDenormals::NoDenormals() : before_(_mm_getcsr()) {
    constexpr unsigned flushToZero = 0x8000;
    constexpr unsigned denormalsAreZero = 0x0040;
    _mm_setcsr(before_ | flushToZero | denormalsAreZero);
}

NoDenormals::~NoDenormals() {
    _mm_setcsr(before_);
}

#else

NoDenormals::NoDenormals() = default;
NoDenormals::~NoDenormals() = default;

#endif

} // namespace orvel
