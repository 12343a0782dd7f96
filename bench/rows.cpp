#include "rows.h"

#include <string.h>

#include <algorithm>

namespace bench {
namespace {

constexpr int64_t alignment = 64;
constexpr int64_t aligned(int64_t n) { return (n + alignment - 1) / alignment * alignment; }

Plane plane(PlaneForm form, int width, int height) {
  Plane p{};
  p.width = form.zoom * ((width + (1 << form.across) - 1) >> form.across);
  p.height = form.zoom * ((height + (1 << form.down) - 1) >> form.down);
  p.row_bytes = p.width * form.bytes;
  p.step = int(aligned(p.row_bytes));
  p.down = form.down;
  p.words = form.words;
  return p;
}

// Places the planes one after the other, each behind a cache line that nobody else uses.
int64_t place(std::array<Plane, 4>& planes, size_t count, uint8_t* memory, int offset) {
  int64_t used = 0;
  for (size_t i = 0; i < count; ++i) {
    planes[i].origin = memory + used + offset;
    used += int64_t(planes[i].step) * planes[i].height + alignment;
  }
  return used;
}

auto source(const RowBench& bench) {
  return !bench.in_forms.empty() && bench.in_forms[0].words ? varied_words : varied_bytes;
}

Rows rows_of(const RowBench& bench, int width, int height, int offset = 0) {
  Rows rows{};
  rows.width = width;
  rows.height = height;
  rows.out_planes = int(bench.out_forms.size());
  for (size_t i = 0; i < bench.in_forms.size(); ++i) rows.in[i] = plane(bench.in_forms[i], width, height);
  for (size_t i = 0; i < bench.out_forms.size(); ++i) rows.out[i] = plane(bench.out_forms[i], width, height);
  rows.bytes_read = place(rows.in, bench.in_forms.size(), source(bench)(0), offset);
  rows.bytes_written = place(rows.out, bench.out_forms.size(), results(0), offset);
  return rows;
}

template <class Visit>
void for_each_result_row(const Rows& rows, Visit visit) {
  for (int i = 0; i < rows.out_planes; ++i)
    for (int y = 0; y < rows.out[i].height; ++y) visit(rows.out[i].row(y).p, rows.out[i].row_bytes);
}

Setting setting(const RowBench& bench, const Rows& rows) {
  const Plane& counted = rows.out[0];
  const auto on_rows = [&](const std::function<Work(const Rows&)>& make) {
    return make ? [=] { return make(rows); } : std::function<Work()>();
  };
  return {
      .units = double(counted.width) * counted.height,
      .prepare =
          [=, source = source(bench)] {
            source(rows.bytes_read);
            results(rows.bytes_written);
          },
      .clear =
          [=] {
            for_each_result_row(rows, [](uint8_t* row, int bytes) {
              for (int i = 0; i < bytes; ++i) row[i] = uint8_t(i);
            });
          },
      .result =
          [=] {
            Result result{{}, rows.out[0].words};
            for_each_result_row(rows, [&](const uint8_t* row, int bytes) {
              result.bytes.insert(result.bytes.end(), row, row + bytes);
            });
            return result;
          },
      .ours = on_rows(bench.ours),
      .plain = on_rows(bench.plain),
      .last_release = on_rows(bench.last_release),
  };
}

enum Kind { main_shape, short_rows, odd_addresses, picture };

void add_shape(const std::string& family, const char* unit, const RowBench& bench, int width, int height, Kind kind) {
  const int offset = kind == odd_addresses ? 1 : 0;
  Line line{.name = std::string(bench.operation) + "/" + std::to_string(width) + "x" + std::to_string(height) +
                    (offset ? " odd" : ""),
            .unit = unit,
            .charted = kind == main_shape,
            .setting = setting(bench, rows_of(bench, width, height, offset)),
            .rivals = {}};
  if (kind == main_shape || kind == picture)
    for (const RowPeer& peer : bench.peers) {
      const Rows rows = rows_of(bench, width, kind == main_shape ? height * peer.more_rows : height);
      line.rivals.push_back({.library = peer.library,
                             .difference = peer.difference,
                             .tolerance = peer.tolerance,
                             .setting = setting(bench, rows),
                             .make = [rows, make = peer.make] { return make(rows); }});
      line.rivals.back().setting.units *= peer.planes;
    }
  add(family, line);
}

}  // namespace

bool add_rows(const std::string& family, const char* unit, const std::vector<RowBench>& table) {
  for (const RowBench& bench : table) {
    add_shape(family, unit, bench, 1920, 2, main_shape);
    add_shape(family, unit, bench, 1917, 2, odd_addresses);
    add_shape(family, unit, bench, 35, 2, short_rows);
    add_shape(family, unit, bench, 16, 2, short_rows);
    if (bench.shapes == in_rows_and_pictures) {
      add_shape(family, unit, bench, 1920, 1080, picture);
      add_shape(family, unit, bench, 7680, 4320, picture);
    }
  }
  return true;
}

}  // namespace bench
