#pragma once

#include "pqx_video.h"

/// Gives NAME, defined above, its second public name __NAME at the same entry.
#define PQX_SECOND_NAME(NAME) extern "C" PQX_API decltype(NAME) __##NAME __attribute__((alias(#NAME)))
