// Counts of successes and their probabilities, those too small for any power left out.
#pragma once

#include <vector>

namespace statplan {

/// The number of successes in n trials with success probability p, from 0 to 1 with both ends.
class BinomialCounts {
  public:
    BinomialCounts(double n, double p);

    int first() const { return first_; }
    int last() const { return first_ + static_cast<int>(probabilities_.size()) - 1; }
    double operator[](int x) const { return probabilities_[static_cast<std::size_t>(x - first_)]; }

    /// The mean of a function of the count.
    template <typename Function>
    double mean(Function of) const {
        double sum = 0;
        for (int x = first(); x <= last(); ++x) sum += (*this)[x] * of(x);
        return sum;
    }

  private:
    int first_ = 0;
    std::vector<double> probabilities_;
};

/// Probabilities of fewer than x and of at least x successes.
class BinomialTails {
  public:
    explicit BinomialTails(const BinomialCounts& counts);

    double below(int x) const { return below_[place(x)]; }
    double from(int x) const { return from_[place(x)]; }

  private:
    std::size_t place(int x) const;

    int first_;
    std::vector<double> below_, from_;
};

}  // namespace statplan
