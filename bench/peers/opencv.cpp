#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "peers.h"

namespace peers {

Library opencv_library() {
  return {"OpenCV", CV_VERSION, [](bool limited) {
            cv::setNumThreads(1);
            cv::setUseOptimized(!limited);
          }};
}

bench::RowPeer opencv_scale(Scaling scaling) {
  return {.library = "OpenCV",
          .difference = "",
          .tolerance = 2,
          .make =
              [scaling](const bench::Rows& rows) {
                const auto matrix = [](const bench::Plane& p) {
                  return cv::Mat(p.height, p.width, p.words ? CV_16SC1 : CV_8UC1, p.row(0), size_t(p.step));
                };
                const cv::Mat s = matrix(rows.in[0]), d = matrix(rows.out[0]);
                const int mode = scaling == Scaling::box       ? cv::INTER_AREA
                                 : scaling == Scaling::nearest ? cv::INTER_NEAREST
                                                               : cv::INTER_LINEAR;
                return bench::repeated([=]() mutable { cv::resize(s, d, d.size(), 0, 0, mode); });
              },
          .more_rows = 8};
}

}  // namespace peers
