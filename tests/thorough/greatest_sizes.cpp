// greatest_sizes [NAME]: operations with 2^31 - 1 or 2^31 - 2 for each size that their work grows with. A buffer is one
// small file mapped again and again, so that all of it is there and little is kept. The end of the result has to be that
// of a short call.
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <set>

#include "case.h"

namespace {

using namespace test;

constexpr int64_t page = 4096;
constexpr int64_t period = page * 9 * 5 * 23;  // rows of whole pixels, and no divisor of 2^31 or 2^32
constexpr int64_t around = int64_t(1) << 36;   // unreadable

/// Memory between unreadable memory that ends where the file ends and repeats it from there downward.
class Repeated {
 public:
  explicit Repeated(int64_t bytes) : mapped_(size_t((bytes + page - 1) / page * page + 2 * around)) {
    const int file = memfd_create("repeated", 0);
    map_ = mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    bool failed = map_ == MAP_FAILED || file < 0 || ftruncate(file, period) != 0;
    end = static_cast<uint8_t*>(map_) + mapped_ - around;
    for (int64_t at = int64_t(mapped_) - 2 * around, mapped = 0; mapped < at && !failed; mapped += period) {
      const int64_t chunk = std::min(period, at - mapped);
      failed = mmap(end - mapped - chunk, size_t(chunk), PROT_READ | PROT_WRITE,
                    MAP_SHARED | MAP_FIXED | MAP_POPULATE, file, period - chunk) == MAP_FAILED;
    }
    if (failed) throw std::bad_alloc();
    close(file);
  }
  Repeated(const Repeated&) = delete;
  ~Repeated() { munmap(map_, mapped_); }

  uint8_t* end;

 private:
  size_t mapped_;
  void* map_;
};

/// Those with the least work, if it is much, where one is great and none is 1, so that products are greater still. Rows have no padding, long ones no distance at all.
std::vector<int> find_sizes(const Operation& op, size_t great, int value) {
  std::vector<int> best;
  int64_t least = INT64_MAX;
  Random random(1);
  for (int turn = 0; turn < 300; ++turn) {
    std::vector<int> ints = draw(
                                op, [&](uint32_t below) { return random() % below; }, false)
                                .ints;
    ints[great] = value;
    if (std::count(ints.begin(), ints.end(), 1)) continue;
    for (size_t k = 0; k < ints.size(); ++k)
      if (op.arguments[k].row_bytes) {
        const int64_t row = op.arguments[k].row_bytes(ints);
        ints[k] = row > 0 && row <= 4096 ? int(row) : 0;
      }
    int64_t work = 0;
    for (const auto& rows : op.contract->touched(ints.data()))
      for (const Rows& r : rows) work += std::max<int64_t>(r.count, 0) * std::max<int64_t>(r.bytes, 0);
    if (work > 1 << 24 && work < least) least = work, best = ints;
  }
  return best;
}

int64_t extent(const std::vector<Rows>& rows) {
  int64_t bytes = 0;
  for (const Rows& r : rows)
    if (r.count > 0 && r.bytes > 0) bytes = std::max(bytes, r.offset + (r.count - 1) * r.apart + r.bytes);
  return bytes;
}

/// With few rows or columns instead, the end has to be the same.
bool check_end(const Operation& op, size_t great, Ints ints) {
  std::vector<int> few_ints = ints;
  few_ints[great] -= (ints[great] - 4096) / 96 * 96;
  const auto rows = op.contract->touched(ints.data()), few_rows = op.contract->touched(few_ints.data());
  std::vector<std::unique_ptr<Repeated>> all(ints.size());
  std::vector<std::vector<uint8_t>> few(ints.size());
  std::vector<Slot> slots(ints.size()), few_slots(ints.size());
  Random random(1);
  int64_t turns = 0;  // so often work in place goes over the file
  for (size_t k = 0; k < ints.size(); ++k) {
    slots[k].number = ints[k];
    few_slots[k].number = few_ints[k];
    if (!op.arguments[k].is_pointer) continue;
    const int64_t bytes = extent(rows[k]), filled = std::min(period, bytes);
    all[k] = std::make_unique<Repeated>(bytes);
    uint8_t* const end = all[k]->end;
    op.arguments[k].fill(random, Data::random, end - filled, filled);
    few[k].assign(end - extent(few_rows[k]), end);
    slots[k].pointer = end - bytes;
    few_slots[k].pointer = few[k].data();
    if (op.contract->parameters[k].writes) turns = (bytes - 1) / period + 1;
  }
  const int64_t result = op.run(slots.data());
  if (turns == 0) return result == op.model(slots.data());
  for (; turns > 0; --turns)
    if (op.model(few_slots.data()) != result) return false;
  for (size_t k = 0; k < ints.size(); ++k) {
    const size_t compared = few[k].size() * 3 / 4;  // the first lack their neighbours
    if (all[k] && !std::equal(few[k].end() - compared, few[k].end(), all[k]->end - compared)) return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::set<std::pair<std::string, size_t>> done;
  int failures = 0;
  for (const Operation& op : all_operations())
    for (size_t k = 0; k < op.arguments.size(); ++k) {
      if (argc > 1 && op.name.find(argv[1]) == std::string::npos) continue;
      if (!op.arguments[k].is_size() || done.contains({op.name, k})) continue;
      if (op.name.find("2ARGB") != std::string::npos) continue;  // 2ABGR with its bytes in another order
      // There is no more than 2 GiB of scratch memory for the two that need it.
      const bool scratch = op.name.starts_with("ColorYCC2") && op.name.ends_with("420_BL_8U");
      const auto sizes = find_sizes(op, k, (scratch ? 536870888 : INT_MAX) - int(done.size() % 2));
      if (sizes.empty()) continue;
      done.insert({op.name, k});
      std::printf("%s: ", call(op, sizes).c_str());
      std::fflush(stdout);
      const bool right = check_end(op, k, sizes);
      std::printf(right ? "right\n" : "WRONG\n");
      failures += !right;
    }
  std::printf("%zu calls, %d failures\n", done.size(), failures);
  return failures || done.empty();
}
