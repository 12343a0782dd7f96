#include "color/table_rules.h"
#include "pqx_video.h"

#define PQX_4(f, i) f(i), f((i) + 1), f((i) + 2), f((i) + 3)
#define PQX_16(f, i) PQX_4(f, i), PQX_4(f, (i) + 4), PQX_4(f, (i) + 8), PQX_4(f, (i) + 12)
#define PQX_32(f, i) PQX_16(f, i), PQX_16(f, (i) + 16)
#define PQX_128(f, i) PQX_32(f, i), PQX_32(f, (i) + 32), PQX_32(f, (i) + 64), PQX_32(f, (i) + 96)
#define PQX_256_FROM(f, i) PQX_128(f, i), PQX_128(f, (i) + 128)
#define PQX_256(f) \
  { PQX_256_FROM(f, 0) }

namespace {

using namespace pqx::rule;

constexpr uint8_t clamp_to_byte(int v) { return uint8_t(v < 0 ? 0 : v > 255 ? 255 : v); }
constexpr uint8_t clip_half_units(int i) { return clamp_to_byte((i - clip_origin) >> 1); }
constexpr uint8_t clip_offset_256(int i) { return clamp_to_byte(i - 256); }

// Ten bits of luma, nine of each chroma in two's complement; the bits above each chroma field absorb its carry.
constexpr uint32_t packed(Ycc c) {
  return uint32_t(c.y) | (uint32_t(c.cb) & 511) << 10 | (uint32_t(c.cr) & 511) << 21;
}
constexpr uint32_t ycc_word_of_red(int x) { return packed(ycc_from_red(x)); }
constexpr uint32_t ycc_word_of_green(int x) { return packed(ycc_from_green(x)); }
constexpr uint32_t ycc_word_of_blue(int x) { return packed(ycc_from_blue(x)); }

constexpr int32_t packed(Rgb c) { return c.r + c.g * (1 << 10) + c.b * (1 << 20); }
constexpr int32_t rgb_word_of_y(int x) { return packed(rgb_from_y(x)); }
constexpr int32_t rgb_word_of_u(int x) { return packed(rgb_from_u(x)); }
constexpr int32_t rgb_word_of_v(int x) { return packed(rgb_from_v(x)); }

}  // namespace

constinit const int16_t pqx_tYY[256] = PQX_256(luma_from_y);
constinit const int16_t pqx_tRV[256] = PQX_256(red_from_v);
constinit const int16_t pqx_tGV[256] = PQX_256(green_from_v);
constinit const int16_t pqx_tGU[256] = PQX_256(green_from_u);
constinit const int16_t pqx_tBU[256] = PQX_256(blue_from_u);
constinit const int16_t pqx_tRCr[256] = PQX_256(red_from_cr);
constinit const int16_t pqx_tGCr[256] = PQX_256(green_from_cr);
constinit const int16_t pqx_tGCb[256] = PQX_256(green_from_cb);
constinit const int16_t pqx_tBCb[256] = PQX_256(blue_from_cb);

constinit const uint8_t pqx_tClip[1664] = {PQX_256_FROM(clip_half_units, 0),    PQX_256_FROM(clip_half_units, 256),
                                           PQX_256_FROM(clip_half_units, 512),  PQX_256_FROM(clip_half_units, 768),
                                           PQX_256_FROM(clip_half_units, 1024), PQX_256_FROM(clip_half_units, 1280),
                                           PQX_128(clip_half_units, 1536)};

constinit const uint32_t pqx_t_r2j[256] = PQX_256(ycc_word_of_red);
constinit const uint32_t pqx_t_g2j[256] = PQX_256(ycc_word_of_green);
constinit const uint32_t pqx_t_b2j[256] = PQX_256(ycc_word_of_blue);

constinit const int32_t pqx_t_Yuv2rgb[256] = PQX_256(rgb_word_of_y);
constinit const int32_t pqx_t_yUv2rgb[256] = PQX_256(rgb_word_of_u);
constinit const int32_t pqx_t_yuV2rgb[256] = PQX_256(rgb_word_of_v);

constinit const uint8_t pqx_video_pClipOff256[800] = {
    PQX_256_FROM(clip_offset_256, 0), PQX_256_FROM(clip_offset_256, 256), PQX_256_FROM(clip_offset_256, 512),
    PQX_32(clip_offset_256, 768)};
