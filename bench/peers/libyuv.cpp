#include "peers.h"

namespace peers {

#define TEXT_OF(X) #X
#define VALUE_OF(X) TEXT_OF(X)

Library libyuv_library() {
  return {"libyuv", VALUE_OF(LIBYUV_VERSION), [](bool limited) {
            constexpr int initialized = 1;
            libyuv::MaskCpuFlags(limited ? initialized | libyuv::kCpuHasX86 | libyuv::kCpuHasSSE2 : -1);
          }};
}

namespace {

libyuv::FilterMode filter_mode(Scaling scaling) {
  switch (scaling) {
    case Scaling::box:
      return libyuv::kFilterBox;
    case Scaling::nearest:
      return libyuv::kFilterNone;
    case Scaling::linear:
      return libyuv::kFilterLinear;
    case Scaling::bilinear:
      return libyuv::kFilterBilinear;
  }
  return libyuv::kFilterNone;
}

}  // namespace

bench::RowPeer libyuv_scale(Scaling scaling) {
  return {.library = "libyuv",
          .difference = "",
          .tolerance = 2,
          .make =
              [mode = filter_mode(scaling)](const bench::Rows& rows) {
                const bench::Plane s = rows.in[0], d = rows.out[0];
                if (s.words)
                  return bench::repeated([=] {
                    libyuv::ScalePlane_16(s.row(0), s.step / 2, s.width, s.height, d.row(0), d.step / 2, d.width,
                                          d.height, mode);
                  });
                return bench::repeated([=] {
                  libyuv::ScalePlane(s.row(0), s.step, s.width, s.height, d.row(0), d.step, d.width, d.height, mode);
                });
              },
          .more_rows = 8};
}

namespace {

// The functions know pixels with blue first; red comes first by a mirrored matrix with the chroma planes swapped.
struct Order {
  int u, v;
  const libyuv::YuvConstants* matrix;

  explicit Order(Packed packed)
      : u(packed == Packed::bgra ? 1 : 2),
        v(packed == Packed::bgra ? 2 : 1),
        matrix(packed == Packed::bgra ? &libyuv::kYuvJPEGConstants : &libyuv::kYvuJPEGConstants) {}
};

template <class Convert>
bench::RowPeer from_ycc(Packed packed, Convert convert, int more_rows) {
  return {.library = "libyuv",
          .difference = "",
          .tolerance = 2,
          .make =
              [=](const bench::Rows& rows) {
                const Order order(packed);
                return bench::repeated([=] {
                  const bench::Plane y = rows.in[0], u = rows.in[order.u], v = rows.in[order.v], d = rows.out[0];
                  convert(y.row(0), y.step, u.row(0), u.step, v.row(0), v.step, d.row(0), d.step, order.matrix,
                          rows.width, rows.height);
                });
              },
          .more_rows = more_rows};
}

}  // namespace

bench::RowPeer libyuv_from_ycc(Packed packed, decltype(libyuv::I444ToARGBMatrix)* convert) {
  return from_ycc(packed, convert, 1);
}
bench::RowPeer libyuv_from_ycc(Packed packed, decltype(libyuv::I420ToARGBMatrixFilter)* convert) {
  return from_ycc(
      packed, [=](auto... arguments) { convert(arguments..., libyuv::kFilterBilinear); }, 8);
}

}  // namespace peers
