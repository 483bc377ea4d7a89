// Numbers and words as a person writes them: what doors print with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "statplan/catalogue.h"

namespace statplan {

/// A number with at most so many significant digits, without trailing zeros: 0.15, 64, 1e-12.
STATPLAN_API std::string number(double x, int digits = 6);
/// A number that reads back as the same double.
STATPLAN_API std::string exactly(double x);
/// "3.2 and 5", "a, b and c"
STATPLAN_API std::string joined(const std::vector<std::string>& words, std::string_view last = " and ");
/// The known word that is nearest to an unknown one; empty when none is near.
STATPLAN_API std::string_view nearest(std::string_view word, const std::vector<std::string_view>& known);
/// "; did you mean --es?" for the known word that is nearest; nothing where none is near.
STATPLAN_API std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& known,
                                      std::string_view dashes = "");
/// What somebody gave, for a message: control characters and bytes that are no UTF-8 escaped, cut after 60.
STATPLAN_API std::string escaped(std::string_view given);
/// The values that an argument may have: "a whole number of at least 2", "greater than 0 and less than 1".
STATPLAN_API std::string rule_of(const Argument& a);
/// A value of an argument: a number, or a choice's word.
STATPLAN_API std::string value_of(const Argument& a, double value, int digits = 6);

}  // namespace statplan
