/// How far the fast forward transform may stray from the typed one, proved and tried.
#include <cmath>
#include <random>

#include "close_to_half.h"
#include "dct/forward_fast_8x8.h"
#include "linear_form.h"
#include "plain.h"

namespace {

using namespace pqx::dct;
using pqx::Block, pqx::f32x4, pqx::four_columns, pqx::load_block, pqx::load_columns, pqx::store_block;

// Both transforms once more, over any kind of numbers: Exact for integers, Single and Double for rounded ones. With
// int, float and double they compute, with the forms below they tell what an error anywhere does to the results.
template <class Single>
using Grid = std::array<std::array<Single, 8>, 8>;

double widened(float a) { return a; }
float narrowed(double a) { return float(a); }

const Cosines& k = forward_cosines;
double of(const Factor& c) { return c.twice[0]; }

template <class Single, class Sum>
void typed_pass(const std::array<Sum, 8>& x, std::array<Single, 8>& X) {
  const Single s07(x[0] + x[7]), s16(x[1] + x[6]), s25(x[2] + x[5]), s34(x[3] + x[4]);
  const Single d07(x[0] - x[7]), d16(x[1] - x[6]), d25(x[2] - x[5]), d34(x[3] - x[4]);
  const auto a = widened(s07 + s34) * of(k.c4), e = widened(s16 + s25) * of(k.c4);
  X[0] = narrowed(a + e);
  X[4] = narrowed(a - e);
  const auto b = widened(s07 - s34), c = widened(s16 - s25);
  X[2] = narrowed(b * of(k.c2) + c * of(k.c6));
  X[6] = narrowed(b * of(k.c6) - c * of(k.c2));
  const auto m1 = widened(d16) * of(half_root), m2 = widened(d25) * of(half_root);
  const Single p = narrowed(m2 + m1), q = narrowed(m1 - m2);
  const auto g = widened(d07 + p), h = widened(d34 + q), i = widened(d07 - p), j = widened(d34 - q);
  X[1] = narrowed(g * of(k.c1) + h * of(k.c7));
  X[7] = narrowed(g * of(k.c7) - h * of(k.c1));
  X[3] = narrowed(i * of(k.c3) - j * of(k.c5));
  X[5] = narrowed(i * of(k.c5) + j * of(k.c3));
}

template <class Single, class Exact>
void typed(const Grid<Exact>& x, Grid<Single>& rows, Grid<Single>& z) {
  for (int y = 0; y < 8; ++y) typed_pass(x[y], rows[y]);
  for (int v = 0; v < 8; ++v) {
    std::array<Single, 8> column, X;
    for (int y = 0; y < 8; ++y) column[y] = rows[y][v];
    typed_pass(column, X);
    for (int u = 0; u < 8; ++u) z[u][v] = X[u];
  }
}

// Results 0 and 4 of the row pass are as typed.
template <class Single, class Exact>
void fast(const Grid<Exact>& samples, const Grid<Single>& typed_rows, Grid<Single>& z) {
  Grid<Single> rows;
  for (int y = 0; y < 8; ++y) {
    const auto& x = samples[y];
    auto& X = rows[y];
    const Exact s07 = x[0] + x[7], s16 = x[1] + x[6], s25 = x[2] + x[5], s34 = x[3] + x[4];
    const Exact d07 = x[0] - x[7], d16 = x[1] - x[6], d25 = x[2] - x[5], d34 = x[3] - x[4];
    const Exact b = s07 - s34, c = s16 - s25, np = d25 + d16, nq = d16 - d25;
    const Single g(d07 * 8119 + np * 5741), h(d34 * 8119 + nq * 5741);
    const Single i(d07 * 8119 - np * 5741), j(d34 * 8119 - nq * 5741);
    const float t1 = c7_over_c1.four_times[0], t3 = c5_over_c3.four_times[0];
    X = {typed_rows[y][0], g + h * t1, Single(b * 5741 + c * 2378), i - j * t3,
         typed_rows[y][4], i * t3 + j, Single(b * 2378 - c * 5741), g * t1 - h};
  }
  const float r2 = half_root.four_times[0];
  for (int v = 0; v < 8; ++v) {
    const ColumnCosines& cosines = v < 4 ? left_cosines : right_cosines;
    const auto c1 = cosines.c1.lane[v % 4], c2 = cosines.c2.lane[v % 4], c3 = cosines.c3.lane[v % 4],
               c4 = cosines.c4.lane[v % 4], c5 = cosines.c5.lane[v % 4], c6 = cosines.c6.lane[v % 4],
               c7 = cosines.c7.lane[v % 4];
    const auto x = [&](int y) { return rows[y][v]; };
    const Single s07 = x(0) + x(7), s16 = x(1) + x(6), s25 = x(2) + x(5), s34 = x(3) + x(4);
    const Single d07 = x(0) - x(7), d16 = x(1) - x(6), d25 = x(2) - x(5), d34 = x(3) - x(4);
    const Single a = s07 + s34, e = s16 + s25, b = s07 - s34, c = s16 - s25;
    z[0][v] = (a + e) * c4;
    z[4][v] = (a - e) * c4;
    z[2][v] = b * c2 + c * c6;
    z[6][v] = b * c6 - c * c2;
    const Single p = (d25 + d16) * r2, q = (d16 - d25) * r2;
    const Single g = d07 + p, h = d34 + q, i = d07 - p, j = d34 - q;
    z[1][v] = g * c1 + h * c7;
    z[7][v] = g * c7 - h * c1;
    z[3][v] = i * c3 - j * c5;
    z[5][v] = i * c5 + j * c3;
  }
}

/// Samples of a kind, and the fast transform of them.
struct Range {
  int low, high;
  double safe_distance, limit;
  Block (*transform)(const int16_t*);
};
const Range ranges[] = {{0, 255, RoundPixels::safe_distance, RoundPixels::limit,
                         [](const int16_t* s) { return forward_fast<RoundPixels>([s] { return load_columns(s); }); }},
                        {-256, 255, RoundResiduals::safe_distance, RoundResiduals::limit, [](const int16_t* s) {
                           return forward_fast<RoundResiduals>([s] { return load_columns(s); });
                         }}};

/// A value made of the samples.
struct Form : test::LinearForm<Form, 64> {
  static inline double low, high;            // samples
  static inline std::vector<double> errors;  // largest size of each

  double largest() const {
    double up = 0, down = 0, error = 0;
    for (double c : of_term) (c > 0 ? up : down) += c * high, (c > 0 ? down : up) += c * low;
    for (size_t i = 0; i < of_error.size(); ++i) error += std::abs(of_error[i]) * errors[i];
    return std::max(up, -down) + error;
  }
  /// A new error of half a unit in the last place of the largest value.
  Form rounded(int bits) const { return with_error(std::exp2(std::floor(std::log2(largest())) - bits)); }
};
template <int bits>
using Rounded = test::Rounded<Form, bits>;

Rounded<53> widened(const Rounded<24>& a) { return Rounded<53>(a.form); }
Rounded<24> narrowed(const Rounded<53>& a) { return Rounded<24>::result(a.form); }

/// The largest |fast - typed| that rounding to single and double precision allows, outside of rows and columns 0 and 4.
double bound(const Range& range) {
  Form::low = range.low;
  Form::high = range.high;
  Form::errors.clear();
  Grid<Rounded<0>> x;
  for (int i = 0; i < 64; ++i) x[size_t(i / 8)][size_t(i % 8)].form = Form::term(size_t(i));
  Grid<Rounded<24>> rows, exactly, quickly;
  typed(x, rows, exactly);
  fast(x, rows, quickly);
  double largest = 0;
  for (size_t u = 0; u < 8; ++u)
    for (size_t v = 0; v < 8; ++v)
      if (u % 4 || v % 4) {
        largest = std::max(largest, (quickly[u][v].form + exactly[u][v].form * -1).largest());
        EXPECT_LT(quickly[u][v].form.largest(), range.limit);
      }
  return largest;
}

TEST(FastForward, StraysLessThanTheSafeDistance) {
  for (const Range& range : ranges) {
    const double largest = bound(range);
    printf("samples %d..%d: |fast - typed| <= %.3g, safe %.3g\n", range.low, range.high, largest,
           range.safe_distance);
    EXPECT_LT(largest, range.safe_distance);
  }
}

// Results around every n + 1/2 in steps of an eighth of a unit.
template <class Round>
void check_rounding(float largest) {
  const float unit = float(Round::safe_distance / (Round::band + 0.5));
  for (float n = -largest; n < largest; ++n)
    for (int eighths = -48; eighths <= 48; ++eighths) {
      const float z = n + 0.5f + float(eighths) * unit / 8, distance = std::abs(z - n - 0.5f);
      Round round;
      const int result = _mm_cvtsi128_si32(round(f32x4{_mm_set1_ps(z)}).v);
      const bool too_close = _mm_movemask_epi8(round.too_close().v);
      ASSERT_TRUE(too_close || result == std::floor(z + 0.5)) << z;
      ASSERT_TRUE(too_close || distance >= Round::safe_distance) << z;
      ASSERT_TRUE(!too_close || distance <= Round::safe_distance + unit / 2) << z;
    }
}

TEST(FastForward, SeesEveryResultCloseToAHalf) {
  check_rounding<RoundPixels>(950);
  check_rounding<RoundResiduals>(1900);
}

TEST(FastForward, TakesBlocksOfNineBits) {
  for (size_t place = 0; place < 64; ++place)
    for (int value : {-32768, -513, -512, -257, -256, -1, 0, 255, 256, 511, 512, 767, 32767}) {
      std::array<int16_t, 64> samples{};
      samples[place] = int16_t(value);
      EXPECT_EQ(all_in_nine_bits(load_block(samples.data())), value >= -256 && value <= 255) << value;
    }
}

// s07 + s34 and s16 + s25 of any samples -256..255.
TEST(FastForward, MultipliesByC4AsTheTypesDo) {
  for (int a = -1024; a <= 1024; ++a)
    for (int e = -1024; e <= 1024; e += 8) {
      alignas(16) int16_t n[8];
      for (int i = 0; i < 8; ++i) n[i] = int16_t(a + e + i);
      const EightRows product = typed_c4_product(pqx::load<pqx::i16x8>(n));
      for (int i = 0; i < 8; ++i)
        ASSERT_EQ((i < 4 ? product.upper.v : product.lower.v)[i % 4], float(a * of(k.c4) + (e + i) * of(k.c4)));
    }
}

using Samples = test::Values;

Grid<int> grid(const Samples& samples) {
  Grid<int> x;
  for (size_t i = 0; i < 64; ++i) x[i / 8][i % 8] = samples[i];
  return x;
}

/// Blocks of all kinds: noise of any amplitude, and the extremes that drive one coefficient.
Samples any_samples(const Range& range, std::mt19937& random) {
  Samples samples;
  const int amplitude = 1 << random() % 10, middle = int(random() % uint32_t(range.high - range.low + 1)) + range.low;
  const auto& driven = test::basis[random() % 64];
  const int kind = int(random() % 4);
  for (int i = 0; i < 64; ++i) {
    int x = middle + int(random() % uint32_t(2 * amplitude)) - amplitude;
    if (kind == 0) x = (driven[size_t(i)] > 0 ? range.high : range.low) + (random() % 8 ? 0 : int(random() % 5) - 2);
    samples[size_t(i)] = int16_t(std::clamp(x, range.low, range.high));
  }
  return samples;
}

/// Collects results instead of rounding them, in the order of the column pass.
struct Record {
  std::vector<f32x4> z;
  pqx::i32x4 operator()(pqx::f32x4 result) {
    z.push_back(result);
    return pqx::all_i32(0);
  }
};

// What the bound is proved for is what the vectors compute, bit for bit.
TEST(FastForward, ComputesWhatTheBoundIsProvedFor) {
  std::mt19937 random(1);
  for (const Range& range : ranges) {
    const double limit = bound(range);
    double farthest = 0;
    for (int turn = 0; turn < 20000; ++turn) {
      const Samples samples = any_samples(range, random);
      Grid<float> rows, exactly, quickly;
      typed(grid(samples), rows, exactly);
      fast(grid(samples), rows, quickly);
      const RowResults vectors = scaled_row_pass(load_columns(samples.data()));
      Record left, right;
      fast_column_pass(four_columns<0, 1>(vectors.upper, vectors.lower), left_cosines, left);
      fast_column_pass(four_columns<4, 1>(vectors.upper, vectors.lower), right_cosines, right);
      const size_t order[] = {0, 4, 2, 6, 1, 7, 3, 5};
      for (size_t n = 0; n < 8; ++n)
        for (size_t v = 0; v < 8; ++v) {
          const size_t u = order[n];
          ASSERT_EQ((v < 4 ? left : right).z[n].v[v % 4], quickly[u][v]) << u << ' ' << v;
          if (u % 4 || v % 4) farthest = std::max(farthest, std::abs(double(quickly[u][v]) - double(exactly[u][v])));
        }
    }
    EXPECT_LE(farthest, limit);
    EXPECT_GT(farthest, limit / 8);
  }
}

TEST(FastForward, RoundsAsTypedCloseToHalves) {
  std::mt19937 random(2);
  int decided_otherwise = 0;
  for (const Range& range : ranges)
    for (int turn = 0; turn < 3000; ++turn) {
      Samples samples = any_samples(range, random), result, expected;
      test::bring_close(samples, test::basis[random() % 64], range.low, range.high);
      store_block(result.data(), range.transform(samples.data()));
      plain::DCT8x8Fwd_16S(samples.data(), expected.data());
      ASSERT_EQ(result, expected);
      Grid<float> rows, exactly, quickly;
      typed(grid(samples), rows, exactly);
      fast(grid(samples), rows, quickly);
      for (size_t i = 0; i < 64; ++i) {
        ASSERT_EQ(std::floor(double(exactly[i / 8][i % 8]) + 0.5), expected[i]);
        decided_otherwise += i / 8 % 4 + i % 4 && std::floor(double(quickly[i / 8][i % 8]) + 0.5) != expected[i];
      }
    }
  EXPECT_GT(decided_otherwise, 100);
}

}  // namespace
