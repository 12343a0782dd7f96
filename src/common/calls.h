/// Operations that operations call, by their second names: a caller can replace either name.
#pragma once

#include "pqx_video.h"

extern "C" {
PQX_API decltype(pqx_Malloc) __pqx_Malloc;
PQX_API decltype(pqx_Free) __pqx_Free;
PQX_API decltype(pqx_Video_DCT8x8Fwd_16S) __pqx_Video_DCT8x8Fwd_16S;
PQX_API decltype(pqx_Video_DCT16x16Fwd_16S) __pqx_Video_DCT16x16Fwd_16S;
PQX_API decltype(pqx_Video_UpSample420_BL_8U) __pqx_Video_UpSample420_BL_8U;
PQX_API decltype(pqx_Video_ColorYCC2RGB444_8U) __pqx_Video_ColorYCC2RGB444_8U;
PQX_API decltype(pqx_Video_ColorYCC2BGRA444_8U) __pqx_Video_ColorYCC2BGRA444_8U;

// From the companion library: reverses the bytes of each of len elements; less than one element does nothing.
PQX_API int32_t __pqx_Vector_SwapByte_32S(const int32_t* pSrc, int32_t* pDst, int32_t len);
}
