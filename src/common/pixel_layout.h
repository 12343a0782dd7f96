#pragma once

namespace pqx {

/// Byte offset of each channel of a packed pixel from its lowest address; a = -1: no alpha. Inks hold 255 minus the
/// channels (cyan stands at r, magenta at g, yellow at b), and black, as it is, at a.
struct PixelLayout {
  int bytes, r, g, b, a = -1;
  bool inks = false;
};

namespace layout {
inline constexpr PixelLayout RGB{.bytes = 3, .r = 0, .g = 1, .b = 2};
inline constexpr PixelLayout ARGB{.bytes = 4, .r = 1, .g = 2, .b = 3, .a = 0};
inline constexpr PixelLayout ABGR{.bytes = 4, .r = 3, .g = 2, .b = 1, .a = 0};
inline constexpr PixelLayout BGRA{.bytes = 4, .r = 2, .g = 1, .b = 0, .a = 3};
inline constexpr PixelLayout RGBA{.bytes = 4, .r = 0, .g = 1, .b = 2, .a = 3};
inline constexpr PixelLayout CMYK{.bytes = 4, .r = 0, .g = 1, .b = 2, .a = 3, .inks = true};
}  // namespace layout

}  // namespace pqx
