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

/// An encoder that has begun a picture, of which nothing will ever be entropy-coded.
class Encoder {
 public:
  Encoder(int width, J_COLOR_SPACE from, J_COLOR_SPACE to, const Components& sampling,
          J_DCT_METHOD dct = JDCT_ISLOW) {
    state_.err = errors();
    jpeg_create_compress(&state_);
    jpeg_mem_dest(&state_, &file_, &file_size_);
    state_.image_width = JDIMENSION(width);
    state_.image_height = 16;
    state_.input_components = int(sampling.size());
    state_.in_color_space = from;
    jpeg_set_defaults(&state_);
    jpeg_set_colorspace(&state_, to);
    for (size_t i = 0; i < sampling.size(); ++i) {
      state_.comp_info[i].h_samp_factor = sampling[i].across;
      state_.comp_info[i].v_samp_factor = sampling[i].down;
    }
    state_.dct_method = dct;
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
  Decoder(int width, J_COLOR_SPACE to, const Components& sampling, bool smooth, J_DCT_METHOD dct = JDCT_ISLOW) {
    const bool with_black = sampling.size() == 4;
    Encoder encoder(width, with_black ? JCS_CMYK : JCS_YCbCr, with_black ? JCS_YCCK : JCS_YCbCr, sampling);
    file_ = encoder.grey_file();
    state_.err = errors();
    jpeg_create_decompress(&state_);
    jpeg_mem_src(&state_, file_.data(), file_.size());
    jpeg_read_header(&state_, TRUE);
    state_.out_color_space = to;
    state_.do_fancy_upsampling = smooth;
    state_.dct_method = dct;
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

}  // namespace peers
