#include "draw.h"

#include <climits>
#include <cstdlib>

namespace test {
namespace {

int draw_size(const Argument& a, const Choose& choose) {
  const auto between = [&](int low, int high) { return low + int(choose(uint32_t(high - low) + 1)); };
  const uint32_t kind = choose(16);
  int n = between(1, 300);
  if (kind < 6 && !a.favoured.empty())
    n = a.favoured[choose(uint32_t(a.favoured.size()))];
  else if (kind < 8)
    n = between(1, 20);
  else if (kind < 11)
    n = 16 * between(1, 18) + between(-1, 1);
  else if (kind == 11)
    n = between(a.lowest, a.highest);
  else if (kind == 12)
    n = between(a.lowest, 3);
  return std::clamp(n, a.lowest, a.highest);
}

/// A step for rows of so many bytes.
int padded(int row, const Choose& choose) {
  switch (choose(6)) {
    case 0:
      return row;
    case 1:
      return row + int(choose(28));
    case 2:
      return (row + 15) / 16 * 16 + 16 * int(choose(5));
    case 3:
      return row + int(choose(70));
    case 4:
      return (row + int(choose(40))) | 1;
    default:
      return std::max(row, 8 << choose(4));
  }
}

/// The least and the greatest numbers as one or two of the sizes. False where the manual has more than a little work for
/// them.
bool draw_extremes(const Operation& operation, const Choose& choose, const std::vector<size_t>& sizes, bool far,
                   Drawn& d) {
  const std::vector<int> ordinary = d.ints;
  for (int twice = 0; twice < 2; ++twice) {
    const size_t k = sizes[choose(uint32_t(sizes.size()))];
    const int low = operation.arguments[k].lowest > 0 ? INT_MAX - 1 : INT_MIN;  // some have no meaning below 1
    d.ints[k] = (choose(2) ? INT_MAX - 1 : low) + int(choose(2));
  }
  for (size_t k = 0; k < d.ints.size(); ++k)
    if (operation.arguments[k].row_bytes) d.ints[k] = choose(2) ? 4096 : -4096;
  const auto rows = operation.contract->touched(d.ints.data());
  const auto little = [&](const std::vector<Rows>& of_one) {
    return std::all_of(of_one.begin(), of_one.end(), [&](const Rows& r) {
      const int64_t reach = std::abs(r.offset) + std::abs(r.apart) * std::max<int64_t>(r.count, 0);
      return r.count <= 0 || (r.count <= 64 && r.bytes <= 4096 && reach <= int64_t(1) << (far ? 35 : 18));
    });
  };
  if (std::all_of(rows.begin(), rows.end(), little)) {
    for (const auto& of_one : rows) d.spans.push_back(joined(of_one));
    return true;
  }
  d.ints = ordinary;
  return false;
}

int64_t end(const Span& s) { return s.offset + s.bytes; }

/// Whether the contract allows the destination at a distance from the source. Rows that are done may be written over,
/// but none that are still to be read.
bool allowed(const Operation& operation, const Overlap& overlap, Ints ints, int64_t distance) {
  if (overlap.allowed == Overlaps::any) return true;
  const auto touched = operation.contract->touched(ints.data());
  const Rows source = touched[overlap.source][0], destination = touched[overlap.destination][0];
  if (distance == 0) return source.apart == destination.apart;
  if (overlap.allowed == Overlaps::equal) return false;
  for (int64_t written = 0; written < destination.count; ++written)
    for (int64_t read = written; read < source.count; ++read) {
      const int64_t low = distance + written * destination.apart - read * source.apart;
      if (low < source.bytes && -low < destination.bytes) return false;
    }
  return true;
}

void draw_overlap(const Operation& operation, const Choose& choose, Drawn& d) {
  if (operation.overlaps.empty() || choose(2)) return;
  const Overlap& overlap = operation.overlaps[choose(uint32_t(operation.overlaps.size()))];
  const auto &source = d.spans[overlap.source], &destination = d.spans[overlap.destination];
  if (source.empty() || destination.empty()) return;
  std::vector<int64_t> steps = {16};
  for (size_t k = 0; k < d.ints.size(); ++k)
    if (operation.arguments[k].row_bytes) steps.push_back(d.ints[k]);
  const uint32_t kind = choose(5);
  if (kind == 1) d.distance = int64_t(choose(129)) - 64;
  if (kind == 2) d.distance = 16 * (int64_t(choose(21)) - 10);
  if (kind == 3) d.distance = (int64_t(choose(9)) - 4) * steps[choose(uint32_t(steps.size()))] + int(choose(33)) - 16;
  if (kind == 4) {
    const int64_t low = source.front().offset - end(destination.back());
    d.distance = low + choose(uint32_t(end(source.back()) - destination.front().offset - low + 1));
  }
  if (!allowed(operation, overlap, d.ints, d.distance)) d.distance = 0;
  if (allowed(operation, overlap, d.ints, d.distance)) d.overlap = &overlap;
}

}  // namespace

void draw_steps(const Operation& operation, const Choose& choose, bool far, std::vector<int>& ints) {
  enum { tight, equal, some_equal, nearly_equal };
  const uint32_t kind = choose(6), direction = choose(4);
  const auto signed_step = [&](int step) { return direction == 0 || (direction == 1 && choose(2)) ? -step : step; };
  int widest = 0;
  for (const Argument& a : operation.arguments)
    if (a.row_bytes) widest = std::max(widest, int(a.row_bytes(ints)));
  const int common = signed_step(padded(widest, choose));
  std::vector<int> earlier;
  for (size_t k = 0; k < ints.size(); ++k) {
    if (!operation.arguments[k].row_bytes) continue;
    const int row = std::max(int(operation.arguments[k].row_bytes(ints)), 0);
    int step = common;
    if (kind == some_equal && !earlier.empty() && choose(2))
      step = earlier[choose(uint32_t(earlier.size()))];
    else if (kind == nearly_equal && !earlier.empty())
      step = earlier.back() + int(choose(31)) - 15;
    else if (kind == tight)
      step = row;
    else if (kind != equal)
      step = signed_step(padded(row, choose));
    if (far) step = signed_step((1 << 30) + int(choose(64)));
    ints[k] = std::abs(step) < row ? row : step;
    earlier.push_back(ints[k]);
  }
}

Drawn draw(const Operation& operation, const Choose& choose, bool far) {
  const std::vector<Argument>& arguments = operation.arguments;
  Drawn d;
  d.data = Data(choose(4));
  d.place = Place(choose(4));
  d.ints.assign(arguments.size(), 0);
  std::vector<size_t> sizes;
  for (size_t k = 0; k < arguments.size(); ++k)
    if (const Argument& a = arguments[k]; a.is_size()) {
      const bool as_before = !sizes.empty() && choose(4) == 0;
      d.ints[k] = as_before ? std::clamp(d.ints[sizes.back()], a.lowest, a.highest) : draw_size(a, choose);
      sizes.push_back(k);
    }
  if (!sizes.empty() && choose(32) == 0 && draw_extremes(operation, choose, sizes, far, d)) return d;
  const bool gigabytes = far && choose(128) == 0;
  for (;;) {
    draw_steps(operation, choose, gigabytes, d.ints);
    d.spans.clear();
    int64_t work = 0;
    for (const auto& rows : operation.contract->touched(d.ints.data())) {
      d.spans.push_back(joined(rows));
      for (const Span& s : d.spans.back()) work += s.bytes + 64;
    }
    std::erase_if(sizes, [&](size_t k) { return d.ints[k] < 2; });
    if (work <= (gigabytes ? 1 << 12 : 1 << 16) || sizes.empty()) break;
    d.ints[sizes[choose(uint32_t(sizes.size()))]] /= 2;
  }
  if (!gigabytes) draw_overlap(operation, choose, d);
  return d;
}

}  // namespace test
