#pragma once

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <string_view>
#include <utility>

#include "report.h"

namespace pqxvideo {

/// Counts pictures, on a terminal in a line that is written again and again, and tells the speed in the end.
class Progress {
 public:
  explicit Progress(const char* what) : what_(what), shown_(isatty(STDERR_FILENO) != 0) {}
  ~Progress() { clear(); }

  /// Takes the time of a step that is worth being measured.
  void measure(auto step) {
    const auto start = Clock::now();
    step();
    busy_ += Clock::now() - start;
  }
  void picture() {
    ++pictures_;
    if (!shown_ || Clock::now() - last_ < std::chrono::milliseconds(100)) return;
    last_ = Clock::now();
    std::cerr << '\r' << what_ << ' ' << pictures_ << std::flush;
    drawn_ = true;
  }
  /// A report in place of the line.
  void interrupt(std::string_view message) {
    clear();
    report(message);
  }
  void finish(size_t stream_bytes) {
    clear();
    const double seconds = std::chrono::duration<double>(busy_).count();
    std::cout << pictures_ << " pictures, " << stream_bytes << " bytes, " << std::fixed << std::setprecision(1)
              << pictures_ / std::max(seconds, 1e-9) << " pictures/s\n";
  }

 private:
  using Clock = std::chrono::steady_clock;

  void clear() {
    if (std::exchange(drawn_, false)) std::cerr << "\r\033[K" << std::flush;
  }

  const char* what_;
  bool shown_, drawn_ = false;
  int pictures_ = 0;
  Clock::duration busy_{};
  Clock::time_point last_{};
};

}  // namespace pqxvideo
