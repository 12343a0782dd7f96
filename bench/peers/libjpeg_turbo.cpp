#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <memory>

// clang-format off
#include <jpeglib.h>
#include <jpegint.h>  // takes the one before for granted
// clang-format on

#include "peers.h"

// The steps of a coder (colour, sampling, transform) are reached through the method pointers of its public structures,
// in an encoder that has begun a picture or a decoder that has read a header.

namespace peers {

#define TEXT_OF(X) #X
#define VALUE_OF(X) TEXT_OF(X)

Library libjpeg_turbo_library() {
  return {"libjpeg-turbo", VALUE_OF(LIBJPEG_TURBO_VERSION), [](bool limited) {
            if (limited)
              setenv("JSIMD_FORCESSE2", "1", 1);
            else
              unsetenv("JSIMD_FORCESSE2");
          }};
}

namespace {

using bench::Plane, bench::Rows, bench::Work;
using SampleRows = std::vector<JSAMPROW>;

struct Sampling {
  int across, down;  // of each component against the densest
};
using Components = std::vector<Sampling>;

jpeg_error_mgr* errors() {
  static jpeg_error_mgr manager;
  return jpeg_std_error(&manager);
}

J_COLOR_SPACE input_space(int components) {
  return components == 1 ? JCS_GRAYSCALE : components == 3 ? JCS_YCbCr : JCS_CMYK;
}
int input_components(J_COLOR_SPACE space) {
  switch (space) {
    case JCS_GRAYSCALE:
      return 1;
    case JCS_YCbCr:
    case JCS_EXT_RGB:
      return 3;
    default:
      return 4;
  }
}

struct Transform {
  J_DCT_METHOD method = JDCT_ISLOW;
  std::vector<unsigned> steps = {};  // in natural order; none: whatever the library takes
};

/// An encoder that has begun a picture, of which nothing will ever be entropy-coded.
class Encoder {
 public:
  Encoder(int width, J_COLOR_SPACE from, J_COLOR_SPACE to, const Components& sampling, Transform transform = {}) {
    state_.err = errors();
    jpeg_create_compress(&state_);
    jpeg_mem_dest(&state_, &file_, &file_size_);
    state_.image_width = JDIMENSION(width);
    state_.image_height = 16;
    state_.input_components = input_components(from);
    state_.in_color_space = from;
    jpeg_set_defaults(&state_);
    jpeg_set_colorspace(&state_, to);
    for (size_t i = 0; i < sampling.size(); ++i) {
      state_.comp_info[i].h_samp_factor = sampling[i].across;
      state_.comp_info[i].v_samp_factor = sampling[i].down;
    }
    state_.dct_method = transform.method;
    if (!transform.steps.empty()) jpeg_add_quant_table(&state_, 0, transform.steps.data(), 100, TRUE);
    jpeg_start_compress(&state_, TRUE);
  }
  Encoder(const Encoder&) = delete;
  ~Encoder() {
    jpeg_destroy_compress(&state_);
    free(file_);
  }

  jpeg_compress_struct* operator->() { return &state_; }
  jpeg_compress_struct* get() { return &state_; }

  /// The whole file, of one colour.
  std::vector<unsigned char> grey_file() {
    std::vector<JSAMPLE> row(state_.image_width * size_t(state_.input_components), 128);
    JSAMPROW rows[] = {row.data()};
    while (state_.next_scanline < state_.image_height) jpeg_write_scanlines(&state_, rows, 1);
    jpeg_finish_compress(&state_);
    return {file_, file_ + file_size_};
  }

 private:
  jpeg_compress_struct state_{};
  unsigned char* file_ = nullptr;
  unsigned long file_size_ = 0;
};

SampleRows row_pointers(const Plane& plane) {
  SampleRows rows;
  for (int y = 0; y < plane.height; ++y) rows.push_back(plane.row(y));
  return rows;
}

/// A decoder that has begun a picture.
class Decoder {
 public:
  Decoder(int width, J_COLOR_SPACE to, const Components& sampling, bool smooth, Transform transform = {}) {
    const J_COLOR_SPACE from = input_space(int(sampling.size()));
    Encoder encoder(width, from, from == JCS_CMYK ? JCS_YCCK : from, sampling, transform);
    file_ = encoder.grey_file();
    state_.err = errors();
    jpeg_create_decompress(&state_);
    jpeg_mem_src(&state_, file_.data(), file_.size());
    jpeg_read_header(&state_, TRUE);
    state_.out_color_space = to;
    state_.do_fancy_upsampling = smooth;
    state_.dct_method = transform.method;
    jpeg_start_decompress(&state_);
  }
  Decoder(const Decoder&) = delete;
  ~Decoder() { jpeg_destroy_decompress(&state_); }

  jpeg_decompress_struct* operator->() { return &state_; }
  jpeg_decompress_struct* get() { return &state_; }

 private:
  std::vector<unsigned char> file_;
  jpeg_decompress_struct state_{};
};

constexpr Sampling dense(int down) { return {2, 1 + down}; }
constexpr Sampling sparse{1, 1};

// The rows of a plane, repeated once above and below, where interpolation looks for neighbours.
class PaddedRows {
 public:
  explicit PaddedRows(const Plane& plane) : rows_(row_pointers(plane)) {
    rows_.insert(rows_.begin(), rows_.front());
    rows_.push_back(rows_.back());
  }
  JSAMPARRAY first() { return rows_.data() + 1; }

 private:
  SampleRows rows_;
};

// Gives an up-sampler all of its rows. It converts the colours of each one or two that it has made.
void up_sample(Decoder& decoder, JSAMPIMAGE in, JSAMPARRAY out, int height) {
  decoder->output_height = JDIMENSION(height);
  decoder->upsample->start_pass(decoder.get());
  for (JDIMENSION read = 0, written = 0; written < JDIMENSION(height);)
    decoder->upsample->upsample(decoder.get(), in, &read, JDIMENSION(height), out, &written, JDIMENSION(height));
}

}  // namespace

bench::RowPeer libjpeg_turbo_down_sample() {
  return {.library = "libjpeg-turbo", .difference = "", .tolerance = 1, .make = [](const Rows& rows) {
            struct State {
              Encoder encoder;
              SampleRows from, to;
            };
            const Plane s = rows.in[0], d = rows.out[0];
            const int rows_per_call = 1 + d.down;
            // The first component is to be halved, and the last, which would merely be copied, is left out once the
            // encoder has chosen its methods.
            std::shared_ptr<State> state(new State{
                {s.width, JCS_YCbCr, JCS_YCbCr, {sparse, sparse, dense(d.down)}}, row_pointers(s), row_pointers(d)});
            state->encoder->num_components = 1;
            return bench::repeated([=] {
              JSAMPARRAY in = state->from.data(), out = state->to.data();
              for (int y = 0; y < s.height; y += rows_per_call)
                state->encoder->downsample->downsample(state->encoder.get(), &in, JDIMENSION(y), &out,
                                                       JDIMENSION(y / rows_per_call));
            });
          }};
}

namespace {

// Colour conversion is what follows up-sampling. In its place one chroma plane is copied, to be compared, or nothing done.
void copy_chroma(j_decompress_ptr decoder, JSAMPIMAGE in, JDIMENSION row, JSAMPARRAY out, int count) {
  for (int i = 0; i < count; ++i) memcpy(out[i], in[1][row + JDIMENSION(i)], decoder->output_width);
}
void convert_nothing(j_decompress_ptr, JSAMPIMAGE, JDIMENSION, JSAMPARRAY, int) {}

}  // namespace

bench::RowPeer libjpeg_turbo_up_sample(Scaling scaling) {
  return {.library = "libjpeg-turbo",
          .difference = "into two rows that stay in cache",
          .tolerance = 1,
          .make =
              [smooth = scaling != Scaling::nearest](const Rows& rows) {
                struct State {
                  Decoder decoder;
                  PaddedRows from;
                  SampleRows to;
                };
                const Plane s = rows.in[0], d = rows.out[0];
                std::shared_ptr<State> state(new State{
                    {d.width, JCS_YCbCr, {dense(s.down), sparse, sparse}, smooth}, PaddedRows(s), row_pointers(d)});
                state->decoder->cconvert->color_convert = copy_chroma;
                return bench::repeated([=] {
                  JSAMPARRAY in[] = {state->from.first(), state->from.first(), state->from.first()};
                  up_sample(state->decoder, in, state->to.data(), d.height);
                  state->decoder->cconvert->color_convert = convert_nothing;
                });
              },
          .more_rows = 1,
          .planes = 2};
}

namespace {

J_COLOR_SPACE color_space(Packed packed) {
  switch (packed) {
    case Packed::rgb:
      return JCS_EXT_RGB;
    case Packed::argb:
      return JCS_EXT_XRGB;
    case Packed::abgr:
      return JCS_EXT_XBGR;
    case Packed::bgra:
      return JCS_EXT_BGRX;
    case Packed::rgba:
      return JCS_EXT_RGBX;
    case Packed::cmyk:
      return JCS_CMYK;
  }
  return JCS_UNKNOWN;
}

Components components(int count) { return Components(size_t(count), sparse); }

}  // namespace

namespace {

/// Full rows of chroma on their way to fewer samples.
class ScratchRows {
 public:
  explicit ScratchRows(int width) : lines_(2 * size_t(width) / sizeof(CacheLine) + 1) {
    rows_ = {lines_[0].bytes, lines_[0].bytes + width};
  }
  JSAMPARRAY first() { return rows_.data(); }

 private:
  struct alignas(64) CacheLine {
    JSAMPLE bytes[64];
  };
  std::vector<CacheLine> lines_;
  SampleRows rows_;
};

}  // namespace

bench::RowPeer libjpeg_turbo_to_ycc(Packed packed) {
  return {.library = "libjpeg-turbo", .difference = "", .tolerance = 1, .make = [=](const Rows& rows) {
            struct State {
              Encoder colors, chroma;
              SampleRows from;
              std::vector<SampleRows> to;
              ScratchRows cb, cr;
            };
            const int planes = rows.out_planes, height = rows.height, band = 1 + rows.out[1].down;
            const bool all_chroma = rows.out[1].width == rows.width;
            std::shared_ptr<State> state(
                new State{{rows.width, color_space(packed), planes == 4 ? JCS_YCCK : JCS_YCbCr, components(planes)},
                          {rows.width, JCS_YCbCr, JCS_YCbCr, {sparse, sparse, dense(rows.out[1].down)}},
                          row_pointers(rows.in[0]),
                          {},
                          ScratchRows(rows.width),
                          ScratchRows(rows.width)});
            state->chroma->num_components = 2;
            for (int i = 0; i < planes; ++i) state->to.push_back(row_pointers(rows.out[size_t(i)]));
            return bench::repeated([=] {
              auto& [colors, chroma, from, to, cb, cr] = *state;
              for (int y = 0; y < height; y += band) {
                JSAMPARRAY out[4];
                for (int i = 0; i < planes; ++i) out[i] = to[size_t(i)].data();
                if (all_chroma) {
                  colors->cconvert->color_convert(colors.get(), &from[size_t(y)], out, JDIMENSION(y), 1);
                } else {
                  JSAMPARRAY full[] = {out[0] + y, cb.first(), cr.first()};
                  colors->cconvert->color_convert(colors.get(), &from[size_t(y)], full, 0, band);
                  chroma->downsample->downsample(chroma.get(), full + 1, 0, out + 1, JDIMENSION(y / band));
                }
              }
            });
          }};
}

bench::RowPeer libjpeg_turbo_from_ycc(Packed packed, Scaling scaling) {
  return {
      .library = "libjpeg-turbo", .difference = "", .tolerance = 1, .make = [=](const Rows& rows) {
        struct State {
          Decoder decoder;
          std::vector<PaddedRows> from;
          SampleRows to;
        };
        const Plane chroma = rows.in[1];
        const int planes = packed == Packed::cmyk ? 4 : 3;
        Components sampling = components(planes);
        if (chroma.width < rows.width) sampling[0] = dense(chroma.down);
        std::shared_ptr<State> state(new State{
            {rows.width, color_space(packed), sampling, scaling != Scaling::nearest}, {}, row_pointers(rows.out[0])});
        for (int i = 0; i < planes; ++i) state->from.emplace_back(rows.in[size_t(i)]);
        return bench::repeated([=, height = rows.height] {
          JSAMPARRAY in[4];
          for (int i = 0; i < planes; ++i) in[i] = state->from[size_t(i)].first();
          up_sample(state->decoder, in, state->to.data(), height);
        });
      }};
}

namespace {

using bench::Block, bench::BlockPeer, bench::BlockPeers, bench::Blocks;

std::vector<unsigned> fine_steps() { return {bench::steps(), bench::steps() + 64}; }

BlockPeer encode_blocks(const char* library, const char* difference, J_DCT_METHOD method) {
  // Samples are taken less 128, which our own encoders leave to the caller: 1024 less in each DC, before division.
  const double level_shift = 1024.0 / bench::steps()[0] / 64;
  return {library, difference, level_shift + 1, [=](const Blocks& blocks) {
            struct State {
              Encoder encoder;
              SampleRows rows;
            };
            std::shared_ptr<State> state(
                new State{{8 * blocks.across, JCS_GRAYSCALE, JCS_GRAYSCALE, {sparse}, {method, fine_steps()}}, {}});
            for (int y = 0; y < 8 * blocks.down; ++y)
              state->rows.push_back(const_cast<JSAMPROW>(blocks.first.pixels) + y * blocks.first.step);
            // The tables of a pass are made when its first rows come.
            state->encoder->fdct->start_pass(state->encoder.get());
            return bench::repeated([=] {
              Encoder& encoder = state->encoder;
              for (int y = 0; y < blocks.down; ++y)
                encoder->fdct->forward_DCT(encoder.get(), &encoder->comp_info[0], state->rows.data(),
                                           reinterpret_cast<JBLOCKROW>(blocks.at(0, y).out), JDIMENSION(8 * y), 0,
                                           JDIMENSION(blocks.across));
            });
          }};
}

BlockPeer decode_blocks(const char* library, const char* difference, J_DCT_METHOD method,
                        const std::vector<unsigned>& steps) {
  return {library, difference, 1, [=](const Blocks& blocks) {
            struct alignas(64) Coefficients {
              JCOEF value[64];
            };
            struct State {
              Decoder decoder;
              std::vector<Coefficients> coefficients;
              SampleRows rows;
            };
            std::shared_ptr<State> state(
                new State{{8 * blocks.across, JCS_GRAYSCALE, {sparse}, false, {method, steps}}, {}, {}});
            for (int y = 0; y < 8 * blocks.down; ++y)
              state->rows.push_back(blocks.first.out_pixels + y * blocks.first.step);
            for (int b = 0; b < blocks.across * blocks.down; ++b) {
              // Samples are given back with 128 added.
              Coefficients& block = state->coefficients.emplace_back();
              std::copy_n(blocks.first.in + 64 * b, 64, block.value);
              block.value[0] = JCOEF(block.value[0] - 1024 / int(steps[0]));
            }
            return bench::repeated([=] {
              Decoder& decoder = state->decoder;
              Coefficients* block = state->coefficients.data();
              for (int y = 0; y < blocks.down; ++y)
                for (int x = 0; x < blocks.across; ++x, ++block)
                  decoder->idct->inverse_DCT[0](decoder.get(), &decoder->comp_info[0], block->value,
                                                state->rows.data() + 8 * y, JDIMENSION(8 * x));
            });
          }};
}

constexpr const char *integers = "integer arithmetic", *floats = "single precision throughout";

}  // namespace

BlockPeers libjpeg_turbo_encode() {
  return {encode_blocks("libjpeg-turbo", integers, JDCT_ISLOW),
          encode_blocks("libjpeg-turbo float", floats, JDCT_FLOAT)};
}
BlockPeers libjpeg_turbo_decode() {
  return {decode_blocks("libjpeg-turbo", integers, JDCT_ISLOW, fine_steps()),
          decode_blocks("libjpeg-turbo float", floats, JDCT_FLOAT, fine_steps())};
}
BlockPeers libjpeg_turbo_inverse() {
  const std::vector<unsigned> ones(64, 1);
  return {decode_blocks("libjpeg-turbo", "integer arithmetic; dequantizes too", JDCT_ISLOW, ones),
          decode_blocks("libjpeg-turbo float", "single precision throughout; dequantizes too", JDCT_FLOAT, ones)};
}

}  // namespace peers
