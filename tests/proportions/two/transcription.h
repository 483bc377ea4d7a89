// The exact tests of two proportions as their rules read: every table visited, every sum from scratch.
//
// The reference that the library's powers are compared with, and measured against. Group sizes may be
// fractional: tables are visited while a count is below the size plus 1, and Fisher's test counts from the
// fractional ends of its conditional distribution.
#pragma once

#include <map>
#include <utility>
#include <vector>

namespace transcription {

/// A design of two groups, and the flag of its test: continuity correction (chi-square) or pooled variance
/// (t).
struct Design {
    double n1;
    double n2;
    double p1;
    double p2;
    int sides;
    double alpha;
    bool flag = false;
};

/// Power, and the number of tables that reject.
struct Result {
    double power = 0;
    long rejected = 0;
};

Result chi_square(const Design& design);
Result t(const Design& design);
Result likelihood_ratio(const Design& design);

/// Fisher's test. Its conditional probabilities are looked up where they have been computed before, unless
/// `from_scratch`: the doubles are the same.
class Fisher {
  public:
    Fisher(const Design& design, bool from_scratch);

    double power();
    double conditional_probability(double x, int t, double psi, double lo, double hi);
    double upper_critical_value(int t, double lo, double hi, double a);
    double lower_critical_value(int t, double lo, double hi, double a);

  private:
    double weight(double u, int t, double psi);
    double combination(double n, double k);
    double probability_of_total(int t, double lo, double hi) const;

    Design design_;
    bool from_scratch_;
    std::map<std::pair<double, double>, double> combinations_;
    std::map<std::pair<int, double>, double> denominators_;
};

double fisher(const Design& design, bool from_scratch = false);

}  // namespace transcription
