/// Arithmetic on what values are made of, to prove how large their rounding errors can become.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

namespace test {

/// A value as a linear form of n terms and of every rounding error so far, all in exact arithmetic. Form says in
/// `errors` how large each can be, and in rounded(bits) how large the next.
template <class Form, size_t n>
struct LinearForm {
  std::array<double, n> of_term{};
  std::vector<double> of_error;

  static Form term(size_t index, double factor = 1) {
    Form form;
    form.of_term[index] = factor;
    return form;
  }
  Form with_error(auto largest) const {
    Form form = static_cast<const Form&>(*this);
    form.of_error.resize(Form::errors.size() + 1);
    form.of_error.back() = 1;
    Form::errors.push_back(largest);
    return form;
  }
  friend Form operator*(Form a, double c) {
    for (double& x : a.of_term) x *= c;
    for (double& x : a.of_error) x *= c;
    return a;
  }
  friend Form operator+(Form a, const Form& b) {
    a.of_error.resize(std::max(a.of_error.size(), b.of_error.size()));
    for (size_t i = 0; i < b.of_error.size(); ++i) a.of_error[i] += b.of_error[i];
    for (size_t i = 0; i < n; ++i) a.of_term[i] += b.of_term[i];
    return a;
  }
};

/// Forms whose operations round to a number of bits; 0: integers, which are exact.
template <class Form, int bits>
struct Rounded {
  Form form;
  Rounded() = default;
  explicit Rounded(Form f) : form(std::move(f)) {}
  explicit Rounded(const Rounded<Form, 0>& integer) requires(bits != 0) : form(integer.form) {
    EXPECT_LT(form.largest(), 0x1p24);
  }
  static Rounded result(const Form& f) { return Rounded(bits == 0 ? f : f.rounded(bits)); }
  friend Rounded operator+(const Rounded& a, const Rounded& b) { return result(a.form + b.form); }
  friend Rounded operator-(const Rounded& a, const Rounded& b) { return result(a.form + b.form * -1); }
  friend Rounded operator*(const Rounded& a, double c) { return result(a.form * c); }
};

}  // namespace test
