#pragma once

#include "pqx_video.h"

// Results are fixed to the last bit: every operation on floating-point numbers is done, as it is written and in its type.
#if defined(__FAST_MATH__) || __FINITE_MATH_ONLY__ || defined(__RECIPROCAL_MATH__) ||           \
    defined(__ASSOCIATIVE_MATH__) || defined(__NO_SIGNED_ZEROS__) || !defined(__SSE2_MATH__) || \
    __FLT_EVAL_METHOD__ != 0
#error "libpqx_video needs exact floating-point arithmetic: no -ffast-math or part of it, no x87"
#endif

/// Gives NAME, defined above, its second public name __NAME at the same entry.
#define PQX_SECOND_NAME(NAME) extern "C" PQX_API decltype(NAME) __##NAME __attribute__((alias(#NAME)))
