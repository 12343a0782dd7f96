#include <string.h>

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

namespace {

cv::Mat matrix(const bench::Plane& p, int channels) {
  return cv::Mat(p.height, p.width, CV_MAKETYPE(p.words ? CV_16S : CV_8U, channels), p.row(0), size_t(p.step));
}

}  // namespace

bench::RowPeer opencv_scale(Scaling scaling) {
  return {.library = "OpenCV",
          .difference = "",
          .tolerance = 2,
          .make =
              [scaling](const bench::Rows& rows) {
                const cv::Mat s = matrix(rows.in[0], 1), d = matrix(rows.out[0], 1);
                const int mode = scaling == Scaling::box       ? cv::INTER_AREA
                                 : scaling == Scaling::nearest ? cv::INTER_NEAREST
                                                               : cv::INTER_LINEAR;
                return bench::repeated([=]() mutable { cv::resize(s, d, d.size(), 0, 0, mode); });
              },
          .more_rows = 8};
}

bench::RowPeer opencv_merge() {
  return {
      .library = "OpenCV", .difference = "", .tolerance = 0, .make = [](const bench::Rows& rows) {
        const int channels = rows.out[0].row_bytes / rows.in[0].row_bytes;
        std::vector<cv::Mat> planes;
        for (int i = 0; i < channels; ++i) planes.push_back(matrix(rows.in[size_t(i)], 1));
        return bench::repeated([=, pixels = matrix(rows.out[0], channels)]() mutable { cv::merge(planes, pixels); });
      }};
}

bench::RowPeer opencv_split() {
  return {.library = "OpenCV", .difference = "", .tolerance = 0, .make = [](const bench::Rows& rows) {
            std::vector<cv::Mat> planes;
            for (int i = 0; i < rows.out_planes; ++i) planes.push_back(matrix(rows.out[size_t(i)], 1));
            return bench::repeated(
                [=, pixels = matrix(rows.in[0], rows.out_planes)]() mutable { cv::split(pixels, planes); });
          }};
}

bench::RowPeer opencv_from_yuv420(Packed packed) {
  const bool rgb = packed == Packed::rgb;
  return {.library = "OpenCV",
          .difference = "",
          .tolerance = rgb ? 2.0 : 66.0,  // our alpha is 0
          .make = [=](const bench::Rows& rows) {
            // It wants the planes one behind the other.
            cv::Mat planes(rows.height * 3 / 2, rows.width, CV_8UC1);
            uint8_t* next = planes.data;
            for (int i = 0; i < 3; ++i)
              for (int y = 0; y < rows.in[i].height; ++y, next += rows.in[i].width)
                memcpy(next, rows.in[i].row(y).p, size_t(rows.in[i].width));
            const bench::Plane& d = rows.out[0];
            const cv::Mat pixels(d.height, d.width, rgb ? CV_8UC3 : CV_8UC4, d.row(0), size_t(d.step));
            const int code = rgb ? cv::COLOR_YUV2RGB_I420 : cv::COLOR_YUV2RGBA_I420;
            return bench::repeated([=]() mutable { cv::cvtColor(planes, pixels, code); });
          }};
}

}  // namespace peers
