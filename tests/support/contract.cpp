#include "contract.h"

namespace test {

std::vector<Span> joined(std::vector<Span> spans) {
  std::erase_if(spans, [](const Span& s) { return s.bytes <= 0; });
  std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.offset < b.offset; });
  std::vector<Span> result;
  for (const Span& s : spans)
    if (!result.empty() && s.offset <= result.back().offset + result.back().bytes)
      result.back().bytes = std::max(result.back().bytes, s.offset + s.bytes - result.back().offset);
    else
      result.push_back(s);
  return result;
}

std::vector<Span> joined(const std::vector<Rows>& rows) {
  std::vector<Span> spans;
  for (const Rows& r : rows)
    for (int64_t row = 0; row < r.count && r.bytes > 0; ++row) spans.push_back({r.offset + row * r.apart, r.bytes});
  return joined(std::move(spans));
}

// What a step of 1 moves more than one of 0 is its factor in a formula; what rows are apart at 0, they move to its side.
int64_t Contract::row_bytes(size_t step, std::vector<int> ints) const {
  ints[step] = 0;
  const auto at_0 = touched(ints.data());
  ints[step] = 1;
  const auto at_1 = touched(ints.data());
  int64_t most = 0;
  for (size_t k = 0; k < at_0.size(); ++k) {
    int64_t factor = 0, bytes = 0;
    for (size_t i = 0; i < at_0[k].size(); ++i) {
      const Rows &a = at_0[k][i], &b = at_1[k][i];
      for (int64_t moved : {std::abs(b.apart - a.apart), std::abs(b.offset - a.offset)})
        if (moved > 0) factor = factor ? std::min(factor, moved) : moved;
      if (b.apart != a.apart) bytes = std::max(bytes, a.bytes + std::abs(a.apart));
      if (b.offset != a.offset) bytes = std::max(bytes, a.bytes);
    }
    if (factor > 0) most = std::max(most, (bytes + factor - 1) / factor);
  }
  return most;
}

}  // namespace test
