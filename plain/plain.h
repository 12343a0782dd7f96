/// Every operation as the plain loop that its contract in pqx_video.h describes, one sample or pixel at a time.
#pragma once

#include "pqx_video.h"

namespace plain {

decltype(pqx_Video_DCT8x8Fwd_16S) DCT8x8Fwd_16S;
decltype(pqx_Video_DCT8x8Fwd_12S_16S) DCT8x8Fwd_12S_16S;
decltype(pqx_Video_DCT8x8Fwd_8U_16S) DCT8x8Fwd_8U_16S;
decltype(pqx_Video_DCT8x8Inv_16S) DCT8x8Inv_16S;
decltype(pqx_Video_DCT8x8Inv_16S_8U) DCT8x8Inv_16S_8U;
decltype(pqx_Video_DCT8x8Inv_1Q_16S) DCT8x8Inv_1Q_16S;
decltype(pqx_Video_DCT8x8Inv_1Q_16S_8U) DCT8x8Inv_1Q_16S_8U;
decltype(pqx_Video_DCT8x8Inv_DC_16S) DCT8x8Inv_DC_16S;
decltype(pqx_Video_DCT8x8Inv_DC_16S_8U) DCT8x8Inv_DC_16S_8U;

decltype(pqx_Video_DownSample420_BL_8U) DownSample420_BL_8U;
decltype(pqx_Video_DownSample420_BL_16S) DownSample420_BL_16S;
decltype(pqx_Video_DownSample422_BL_8U) DownSample422_BL_8U;
decltype(pqx_Video_DownSample422_BL_16S) DownSample422_BL_16S;

decltype(pqx_Video_ColorRGB2YCC444_8U) ColorRGB2YCC444_8U;
decltype(pqx_Video_ColorABGR2YCC444_8U) ColorABGR2YCC444_8U;
decltype(pqx_Video_ColorARGB2YCC444_8U) ColorARGB2YCC444_8U;
decltype(pqx_Video_ColorBGRA2YCC444_8U) ColorBGRA2YCC444_8U;
decltype(pqx_Video_ColorRGB2YCC422_BL_8U) ColorRGB2YCC422_BL_8U;
decltype(pqx_Video_ColorABGR2YCC422_BL_8U) ColorABGR2YCC422_BL_8U;
decltype(pqx_Video_ColorARGB2YCC422_BL_8U) ColorARGB2YCC422_BL_8U;
decltype(pqx_Video_ColorBGRA2YCC422_BL_8U) ColorBGRA2YCC422_BL_8U;
decltype(pqx_Video_ColorRGB2YCC420_BL_8U) ColorRGB2YCC420_BL_8U;
decltype(pqx_Video_ColorABGR2YCC420_BL_8U) ColorABGR2YCC420_BL_8U;
decltype(pqx_Video_ColorARGB2YCC420_BL_8U) ColorARGB2YCC420_BL_8U;
decltype(pqx_Video_ColorBGRA2YCC420_BL_8U) ColorBGRA2YCC420_BL_8U;
decltype(pqx_Video_ColorCMYK2YCCK444_8U) ColorCMYK2YCCK444_8U;
decltype(pqx_Video_ColorRGB2YCC444_16S) ColorRGB2YCC444_16S;

}  // namespace plain
