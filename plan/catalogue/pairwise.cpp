// Pairwise comparisons of group means in a one-way design, at a level adjusted for the number of pairs.
#include <algorithm>

#include "plan/groups.h"
#include "statpower/anova.h"

namespace statplan {

namespace {

const Argument first{.name = "first",
                     .meaning = "First group compared, counted from 1",
                     .range = kSize,
                     .kind = Kind::whole,
                     .otherwise = 1,
                     .phrase = "group {} as the first"};
const Argument second{.name = "second",
                      .meaning = "Second group compared, counted from 1",
                      .range = kSize,
                      .kind = Kind::whole,
                      .otherwise = 2,
                      .phrase = "group {} as the second of the pair"};
const Argument adjustment{.name = "adjustment",
                          .meaning = "Adjustment of the level, or of the confidence, for all pairs of groups",
                          .kind = Kind::choice,
                          .otherwise = 0,  // the library's codes, in its order
                          .choices = {"bonferroni", "sidak", "none"}};
const Argument diff_pair = diff.means_in_words("Difference of the two means compared, first minus second");

bool is_pair(const Values& v, std::size_t groups_in_all) {
    return v[first] >= 1 && v[second] >= 1 && v[first] != v[second] &&
           std::max(v[first], v[second]) <= static_cast<double>(groups_in_all);
}

/// The library wants the groups in order; the test is two-sided, and the order changes nothing else.
struct Pair {
    explicit Pair(const Values& v)
        : k(static_cast<int>(v.list(sizes).size())),
          i(static_cast<int>(std::min(v[first], v[second]))),
          j(static_cast<int>(std::max(v[first], v[second]))),
          method(static_cast<int>(v[adjustment])) {}
    int k, i, j, method;
};

double power_of(const Values& v, Cancel*) {
    const auto size = v.list(sizes);
    if (!is_pair(v, size.size()) || !has_error_df(v) || std::isnan(v[diff] / v[sd])) return kNotGiven;
    const Pair pair(v);
    std::vector<double> mean_of(size.size());
    mean_of[static_cast<std::size_t>(pair.i) - 1] = v[diff];
    return probability(
        PowerPairwiseDiff(pair.k, mean_of.data(), size.data(), pair.i, pair.j, pair.method, v[sd], v[alpha]));
}

double half_width_of(const Values& v, Cancel*) {
    const auto size = v.list(sizes);
    if (!is_pair(v, size.size()) || !has_error_df(v)) return kNotGiven;
    const Pair pair(v);
    return width(HalfCIPairwiseDiff(pair.k, size.data(), pair.i, pair.j, pair.method, total_size(v), v[sd],
                                    1 - v[confidence]));
}

void complete_diff(Values& v) {
    const auto m = v.list(means);
    if (!is_pair(v, m.size())) return;
    v.set(diff, m[static_cast<std::size_t>(v[first]) - 1] - m[static_cast<std::size_t>(v[second]) - 1]);
}

void from_d(Values& v) {
    v.set(diff, v[d]), v.set(sd, 1);
}

Check no_pair(const Values& v) {
    if (Check wrong = groups_agree(v)) return wrong;
    if (v[first] == v[second]) return Refusal{.argument = "second", .reason = "is the first group itself"};
    if (const int k = group_count(v); k == 0 || is_pair(v, static_cast<std::size_t>(k))) return {};
    return Refusal{.argument = std::string((v[first] > v[second] ? first : second).name),
                   .reason = "there are only " + std::to_string(group_count(v)) + " groups"};
}

const Entry pairwise{{
    .name = "pairwise",
    .title = "Pairwise comparisons of group means",
    .family = Family::groups,
    .study = "Two or more groups, a measurement each: do the means of two of them differ, tested with all "
             "other pairs?",
    .phrase = "pairwise comparison in a one-way design",
    .sizes = k_samples(),
    .power = {.ways = {{{means, sd_within, first.needed(), second.needed()}, complete_diff},
                       {{diff_pair, sd_within, first, second}},
                       {{diff_pair, sd_within, groups, first, second}},
                       {{d, first, second}, from_d},
                       {{d, groups, first, second}, from_d}},
              .options = {adjustment, alpha},
              .value = power_of,
              .contradiction = no_pair},
    .effect = [](const Values& v) { return v[diff]; },
    .precision = {.ways = {{{sd_within, first, second}}, {{sd_within, groups, first, second}}},
                  .options = {adjustment, confidence},
                  .value = half_width_of,
                  .contradiction = no_pair},
    .effects = {{d, [](const Values& v) { return v[diff] / v[sd]; }}},
    .method = [](const Values& v) -> std::string {
        return "noncentral F distribution" +
               (v.is(adjustment, 2)
                    ? ""
                    : ", level adjusted for all pairs: " +
                          std::string(adjustment.choices[static_cast<std::size_t>(v[adjustment])]));
    },
    .performed = [](const Values& v) -> std::string {
        const std::string words = "pairwise comparison in a one-way design";
        return v.is(adjustment, 2)
                   ? words + ", not adjusted for other pairs,"
                   : words + ", adjusted for all pairs (" +
                         std::string(adjustment.choices[static_cast<std::size_t>(v[adjustment])]) + "),";
    },
    .notes =
        {"first and second matter where the groups differ in size; the spread is estimated from all groups"},
    .sources = {"S. E. Maxwell and H. D. Delaney, Designing Experiments and Analyzing Data, 2nd ed. (2004), "
                "chapter 5"},
    .examples = {{"Groups 1 and 3 of four groups of 15, Bonferroni's adjustment for 6 pairs",
                  "pairwise power --means 10,12,15,11 --sd 5 --n 15 --first 1 --second 3", "power",
                  0.506115514022, 1e-9, "R: noncentral pt() with 56 degrees of freedom at level 0.05 / 6"},
                 {"Half-width of a difference between two of four groups of 15",
                  "pairwise precision --sd 5 --groups 4 --n 15", "halfwidth", 4.9938065716, 1e-9,
                  "R: qt(1 - 0.025 / 6, 56) * 5 * sqrt(2 / 15)"}},
}};

}  // namespace

}  // namespace statplan
