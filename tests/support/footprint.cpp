#include "footprint.h"

#include <gtest/gtest.h>

namespace test {

const Contract& contract_of(const Operation& operation) {
  return contracts().at(operation.name.rfind("pqx_", 0) == 0 ? operation.name : "pqx_Video_" + operation.name);
}

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

std::vector<std::vector<Rows>> rows_by_manual(const Operation& operation, Ints ints) {
  return contract_of(operation).touched(ints.data());
}

void compare_with_manual(const Operation& operation, Ints ints) {
  if (::testing::Test::HasFailure()) return;
  const auto rows = rows_by_manual(operation, ints);
  for (size_t k = 0; k < rows.size(); ++k)
    if (const Argument& a = operation.arguments[k]; a.is_pointer && joined(a.spans(ints)) != joined(rows[k]))
      ADD_FAILURE() << call(operation, ints) << ", " << contract_of(operation).parameters[k].name
                    << ": the header says something else than its descriptor";
}

}  // namespace test
