/// Plain loops as a careful programmer writes them, with known widths and ranges, and pointers that are known not to
/// alias. The loops in plain/, which are there to be read, are what the compiler makes less of.
#pragma once

#include "plain.h"
#include "pqx_video.h"

namespace baseline {

decltype(pqx_Video_CopyRef_8U) CopyRef_8U;
decltype(pqx_Video_CopyRefAve_8U) CopyRefAve_8U;
decltype(pqx_Video_CopyRef_8U_16S) CopyRef_8U_16S;
decltype(pqx_Video_Average2NoRnd_8U) Average2NoRnd_8U;
decltype(pqx_Video_Average2Rnd_8U) Average2Rnd_8U;
decltype(pqx_Video_Average3NoRnd_8U) Average3NoRnd_8U;
decltype(pqx_Video_Average3Rnd_8U) Average3Rnd_8U;
decltype(pqx_Video_AddBlock_16S_8U_I) AddBlock_16S_8U_I;
decltype(pqx_Video_InterpX_8U) InterpX_8U;
decltype(pqx_Video_InterpY_8U) InterpY_8U;
decltype(pqx_Video_InterpXY_8U) InterpXY_8U;
decltype(pqx_Video_InterpAveX_8U) InterpAveX_8U;
decltype(pqx_Video_InterpAveY_8U) InterpAveY_8U;
decltype(pqx_Video_InterpAveXY_8U) InterpAveXY_8U;
decltype(pqx_Video_InterpX_8U_16S) InterpX_8U_16S;
decltype(pqx_Video_InterpY_8U_16S) InterpY_8U_16S;
decltype(pqx_Video_InterpXY_8U_16S) InterpXY_8U_16S;
decltype(pqx_Video_InterpX_Y_XY_8U) InterpX_Y_XY_8U;
decltype(pqx_VideoInterpX_Y_XY_8U_w16) InterpX_Y_XY_8U_w16;
decltype(pqx_VideoInterpX_Y_XY_8U_comm) InterpX_Y_XY_8U_comm;
decltype(pqx_Video_H263OverlappedMC_8U) H263OverlappedMC_8U;
decltype(pqx_Video_H263OverlappedMC_8U_16S) H263OverlappedMC_8U_16S;
decltype(pqx_Video_SumAbsDiff_8U) SumAbsDiff_8U;

decltype(pqx_Video_Quantize_16S_I) Quantize_16S_I;
decltype(pqx_Video_DeQuantize_16S_I) DeQuantize_16S_I;

decltype(pqx_Video_ColorRGB2YCC420_BL_8U) ColorRGB2YCC420_BL_8U;
decltype(pqx_Video_ColorABGR2YCC420_BL_8U) ColorABGR2YCC420_BL_8U;
decltype(pqx_Video_ColorARGB2YCC420_BL_8U) ColorARGB2YCC420_BL_8U;
decltype(pqx_Video_ColorBGRA2YCC420_BL_8U) ColorBGRA2YCC420_BL_8U;
decltype(pqx_Video_ColorYCC2RGB420_BL_8U) ColorYCC2RGB420_BL_8U;
decltype(pqx_Video_ColorYCC2BGRA420_BL_8U) ColorYCC2BGRA420_BL_8U;
decltype(pqx_Video_ColorYUV2ABGR420_W_8U) ColorYUV2ABGR420_W_8U;
decltype(pqx_Video_ColorYUV2ABGR420_WX2_8U) ColorYUV2ABGR420_WX2_8U;
decltype(pqx_Video_ColorYUV2ABGR420_WX3_8U) ColorYUV2ABGR420_WX3_8U;

using plain::P64Loop_8U;

}  // namespace baseline
