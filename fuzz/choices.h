// Where the arguments of a call come from: a random generator, the bytes that a coverage-guided fuzzer hands over, or the
// text of a recorded call.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <string>

namespace fuzz {

/// A stream of choices.
class Choices {
  public:
    virtual ~Choices() = default;

    /// A number of 0..count - 1.
    virtual std::uint64_t below(std::uint64_t count) = 0;

    bool one_in(std::uint64_t n) { return below(n) == 0; }
    /// Between `low` and `high`.
    double uniform(double low, double high) {
        return low + (high - low) * static_cast<double>(below(1u << 30)) / (1u << 30);
    }
    double log_uniform(double low, double high) { return low * std::pow(high / low, uniform(0, 1)); }
    template <std::size_t count>
    double one_of(const double (&values)[count]) {
        return values[below(count)];
    }
};

class RandomChoices : public Choices {
  public:
    explicit RandomChoices(std::uint64_t seed) : random_(seed) {}
    std::uint64_t below(std::uint64_t count) override { return random_() % count; }

  private:
    std::mt19937_64 random_;
};

/// Zeros when the bytes are used up.
class ByteChoices : public Choices {
  public:
    explicit ByteChoices(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    std::uint64_t below(std::uint64_t count) override {
        std::uint64_t value = 0;
        for (std::uint64_t range = 1; range < count && !bytes_.empty(); range *= 256) {
            value = value * 256 + bytes_.front();
            bytes_ = bytes_.subspan(1);
        }
        return value % count;
    }

  private:
    std::span<const std::uint8_t> bytes_;
};

/// How far the arguments of a call are from those of a plan.
enum class Manner { kOrdinary, kMixed };

double ordinary(const std::string& role, Choices& choices);
double boundary(const std::string& role, Choices& choices);
double hostile(const std::string& role, Choices& choices);

}  // namespace fuzz
