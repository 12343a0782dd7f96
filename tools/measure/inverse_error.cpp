/// How far the inverse 8x8 transforms lie from the exact one, as IEEE 1180-1990 measures it. Prints a section for
/// pages.py.

#include <cstdio>

#include "ieee_1180.h"

int main() {
  using namespace ieee_1180;
  std::puts("== inverse-error");
  std::puts("| inverse | samples | sign | peak | worst pixel mse | overall mse | worst pixel mean | overall mean |");
  std::puts("|---|:-:|:-:|--:|--:|--:|--:|--:|");
  std::printf("| *allowed* | | | %.0f | %g | %g | %g | %g |\n", allowed.peak, allowed.worst_mean_square,
              allowed.mean_square, allowed.worst_mean, allowed.mean);
  for (const Form& form : forms)
    for (const Range range : ranges)
      for (int sign : {1, -1}) {
        const Errors e = measure(form, range, sign);
        std::printf("| %s() | %d..%d | %+d | %.0f | %.4f | %.6f | %.4f | %.6f |\n", form.name, range.lowest,
                    range.highest, sign, e.peak, e.worst_mean_square, e.mean_square, e.worst_mean, e.mean);
      }
}
