#include "jpeg/row_converter.h"

#include <algorithm>
#include <new>

#include "pqx_video.h"

namespace pqx_codec::jpeg {
namespace {

/// Light that passes two layers of ink, in 255ths.
constexpr uint8_t product(int a, int b) { return uint8_t((a * b + 127) / 255); }
static_assert(product(255, 77) == 77 && product(128, 128) == 64);

}  // namespace

RowConverter::RowConverter(ColorModel model, ChromaRatio ratio, Upsampling upsampling,
                           const std::vector<Plane>& planes, Image& image)
    : model_(model),
      ratio_(ratio),
      bilinear_(upsampling == Upsampling::bilinear),
      planes_(planes),
      image_(image),
      even_width_((image.width() + 1) / 2 * 2),
      last_row_(image.step()) {
  if (model_ == ColorModel::grey || model_ == ColorModel::ycc) return;
  for (auto& row : upsampled_) row.resize(size_t(std::max(even_width_, 4)));
  cmyk_.resize(size_t(even_width_) * 4);
}

void RowConverter::convert_through(int rows) {
  const bool needs_row_below = bilinear_ && ratio_.rows == 2;
  const int pairs = rows >= image_.height() ? (image_.height() + 1) / 2 : rows / 2 - needs_row_below;
  for (; next_pair_ < pairs; ++next_pair_) convert_pair(next_pair_);
}

void RowConverter::convert_pair(int pair) {
  const int y = 2 * pair;
  const RowPair out = {image_.row(y), y + 1 < image_.height() ? image_.row(y + 1) : last_row_.data()};
  switch (model_) {
    case ColorModel::grey:
      for (int i = 0; i < 2; ++i) std::copy_n(planes_[0].row(y + i), image_.width(), out[size_t(i)]);
      break;
    case ColorModel::ycc:
      convert_ycc(pair, out);
      break;
    default:
      convert_upsampled(pair, out);
  }
}

void RowConverter::convert_ycc(int pair, RowPair out) const {
  const uint8_t* const luma[] = {planes_[0].row(2 * pair), planes_[0].row(2 * pair + 1)};
  if (ratio_ == ChromaRatio{2, 2}) {
    const uint8_t *const cb = chroma_row(1, pair), *const cr = chroma_row(2, pair);
    const pqx_Status status =
        bilinear_ ? pqx_Video_ColorYCC2RGB420_BL_8U(luma[0], luma[1], chroma_row(1, pair - 1),
                                                    chroma_row(2, pair - 1), cb, cr, chroma_row(1, pair + 1),
                                                    chroma_row(2, pair + 1), out[0], out[1], even_width_)
                  : pqx_Video_ColorYCC2RGB420_NN_8U(luma[0], luma[1], cb, cr, out[0], out[1], even_width_);
    if (status != PQX_OK) throw std::bad_alloc();
    return;
  }
  const auto convert_row = ratio_ == ChromaRatio{1, 1} ? pqx_Video_ColorYCC2RGB444_8U
                           : bilinear_                 ? pqx_Video_ColorYCC2RGB422_BL_8U
                                                       : pqx_Video_ColorYCC2RGB422_NN_8U;
  for (int i = 0; i < 2; ++i) {
    const int row = 2 * pair + i;
    convert_row(luma[i], chroma_row(1, row), chroma_row(2, row), out[size_t(i)], even_width_);
  }
}

void RowConverter::convert_upsampled(int pair, RowPair out) {
  std::array<RowPair, 4> components{};
  for (size_t c = 0; c < planes_.size(); ++c) components[c] = full_rows(c, pair);

  const size_t width = size_t(image_.width());
  for (size_t i = 0; i < 2; ++i) {
    const auto [c0, c1, c2, k] = std::array{components[0][i], components[1][i], components[2][i], components[3][i]};
    uint8_t* pixel = out[i];
    if (model_ == ColorModel::rgb) {
      for (size_t x = 0; x < width; ++x, pixel += 3) pixel[0] = c0[x], pixel[1] = c1[x], pixel[2] = c2[x];
    } else if (model_ == ColorModel::cmyk) {
      for (size_t x = 0; x < width; ++x, pixel += 3)
        pixel[0] = product(c0[x], k[x]), pixel[1] = product(c1[x], k[x]), pixel[2] = product(c2[x], k[x]);
    } else {
      pqx_Video_ColorYCCK2CMYK444_8U(c0, c1, c2, k, cmyk_.data(), image_.width());
      const uint8_t* ink = cmyk_.data();
      for (size_t x = 0; x < width; ++x, pixel += 3, ink += 4)
        pixel[0] = product(ink[0], ink[3]), pixel[1] = product(ink[1], ink[3]), pixel[2] = product(ink[2], ink[3]);
    }
  }
}

/// Two rows of a component with a sample for each pixel.
RowConverter::RowPair RowConverter::full_rows(size_t component, int pair) {
  const Plane& plane = planes_[component];
  const bool chroma = component == 1 || component == 2;
  if (!chroma || ratio_ == ChromaRatio{1, 1}) return {plane.row(2 * pair), plane.row(2 * pair + 1)};

  const RowPair out = {upsampled_[2 * component - 2].data(), upsampled_[2 * component - 1].data()};
  if (ratio_.rows == 1) {
    const auto upsample = bilinear_ ? pqx_Video_UpSample422_BL_8U : pqx_Video_UpSample422_NN_8U;
    for (int i = 0; i < 2; ++i) upsample(chroma_row(component, 2 * pair + i), plane.columns(), out[size_t(i)]);
  } else if (bilinear_) {
    pqx_Video_UpSample420_BL_8U(chroma_row(component, pair - 1), chroma_row(component, pair),
                                chroma_row(component, pair + 1), plane.columns(), out[0], out[1]);
  } else {
    pqx_Video_UpSample420_NN_8U(chroma_row(component, pair), plane.columns(), out[0], out[1]);
  }
  return out;
}

/// A row of chroma; beyond the picture the nearest one. The bilinear operations read two columns at least: a lone
/// one is repeated.
uint8_t* RowConverter::chroma_row(size_t component, int row) const {
  const Plane& plane = planes_[component];
  uint8_t* const samples = plane.row(std::clamp(row, 0, plane.rows() - 1));
  if (plane.columns() == 1) samples[1] = samples[0];
  return samples;
}

}  // namespace pqx_codec::jpeg
