/// Operations that take one row of a picture at a time, two, or all of them.
#pragma once

#include <array>

#include "bench.h"

namespace bench {

/// How a plane relates to the pixels of its picture: bytes for each, halvings across and down, and enlargement.
struct PlaneForm {
  int bytes;
  int across = 0, down = 0;
  bool words = false;
  int zoom = 1;
};
inline constexpr PlaneForm full{1}, halved{1, 1}, quartered{1, 1, 1}, two_bytes{2}, three_bytes{3}, four_bytes{4};
inline constexpr PlaneForm full_words{2, 0, 0, true}, halved_words{2, 1, 0, true}, quartered_words{2, 1, 1, true},
    two_words{4, 0, 0, true}, three_words{6, 0, 0, true}, four_words{8, 0, 0, true};
constexpr PlaneForm zoomed(int factor) { return {.bytes = 4, .zoom = factor}; }

/// A pointer to whatever an operation wants to see there.
struct At {
  uint8_t* p;
  template <class T>
  operator T*() const {
    return reinterpret_cast<T*>(p);
  }
};

struct Plane {
  uint8_t* origin;
  int step, width, height, row_bytes, down;
  bool words;

  At row(int y) const { return {origin + int64_t(y) * step}; }
};

/// The planes of a picture, or of a few rows.
struct Rows {
  int width, height;
  std::array<Plane, 4> in, out;
  int out_planes;
  int64_t bytes_read, bytes_written;
};

/// The rows of one call.
struct Band {
  const Rows& rows;
  int y;
  int width = rows.width, height = rows.height;  // of the picture

  int in_step(int plane) const { return rows.in[plane].step; }
  int out_step(int plane) const { return rows.out[plane].step; }
  At in(int plane, int row = 0) const { return rows.in[plane].row((y >> rows.in[plane].down) + row); }
  At out(int plane, int row = 0) const { return rows.out[plane].row((y >> rows.out[plane].down) + row); }
  /// As in(), but within the picture.
  At in_clamped(int plane, int row) const {
    const Plane& p = rows.in[plane];
    const int wanted = (y >> p.down) + row;
    return p.row(wanted < 0 ? 0 : wanted < p.height ? wanted : p.height - 1);
  }
};

constexpr int all_rows = 0;

/// The planes of an operation and how to call it for one band of them.
template <class Call>
struct RowForm {
  std::vector<PlaneForm> in, out;
  int rows_per_call;
  Call call;
};
template <class Call>
RowForm(std::vector<PlaneForm>, std::vector<PlaneForm>, int, Call) -> RowForm<Call>;

struct RowPeer {
  std::string library, difference;
  double tolerance;
  std::function<Work(const Rows&)> make;
  int more_rows = 1;  // for libraries that treat the edges of a picture apart from the rest
  int planes = 1;     // of the result's size that are made at once
};

using RowPeers = std::vector<RowPeer>;

/// Two rows of 1920, 35 and 16 pixels; for operations that walk pictures also two of those.
enum Shapes { in_rows, in_rows_and_pictures };

struct RowBench {
  const char* operation;
  std::vector<PlaneForm> in_forms, out_forms;
  std::function<Work(const Rows&)> ours, plain, last_release;
  Shapes shapes;
  RowPeers peers;

  template <class F, class Call>
  RowBench(Sides<F> sides, const RowForm<Call>& form, Shapes shapes, RowPeers peers)
      : operation(sides.name),
        in_forms(form.in),
        out_forms(form.out),
        ours(walk(sides.ours, form)),
        plain(walk(sides.plain, form)),
        last_release(sides.last_release ? walk(sides.last_release, form) : nullptr),
        shapes(shapes),
        peers(std::move(peers)) {}

 private:
  template <class F, class Call>
  static std::function<Work(const Rows&)> walk(F* f, const RowForm<Call>& form) {
    return [f, band = form.rows_per_call, call = form.call](const Rows& rows) {
      return repeated([=] {
        for (int y = 0; y < rows.height; y += band == all_rows ? rows.height : band) call(f, Band{rows, y});
      });
    };
  }
};

/// Adds a table to the family; yields true, so that a constant can stand for having done so.
bool add_rows(const std::string& family, const char* unit, const std::vector<RowBench>& table);

}  // namespace bench
