#include <libyuv.h>

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

}  // namespace peers
