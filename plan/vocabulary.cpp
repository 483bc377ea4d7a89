#include "plan/vocabulary.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "plan/search.h"

namespace statplan {

Sizes one_sample(double (*least)(const Values&), const Argument& size) {
    return {.ways = {{{size}}}, .found = {size}, .least = least, .share = [](const Values&) {
                return std::vector<double>{1};
            }};
}

Sizes two_samples(double (*least)(const Values&)) {
    const auto each = [](Values& v) { v.set(n1, v[n]), v.set(n2, v[n]); };
    const auto by_ratio = [](Values& v) { v.set(n2, rounded_up(v[n1] * v[ratio])); };
    const auto share_total = [](Values& v) {
        v.set(n1, std::round(v[total] / (1 + v[ratio])));
        v.set(n2, v[total] - v[n1]);
    };
    return {.ways = {{{n.means_in_words("Size of each group").said("{} in each group")}, each},
                     {{n1, n2}},
                     {{n1, ratio}, by_ratio},
                     {{total, ratio}, share_total}},
            .found = {n1, n2},
            .shares = {ratio},
            .least = least,
            .share =
                [](const Values& v) {
                    return std::vector<double>{1, v[ratio]};
                },
            .note = "n is the number in each group"};
}

namespace {

/// Lists with an element for each group.
constexpr std::array kOfGroups{&means, &coefficients, &sizes, &weights};

}  // namespace

int group_count(const Values& v) {
    for (const Argument* list : kOfGroups)
        if (!v.list(*list).empty()) return static_cast<int>(v.list(*list).size());
    return std::isnan(v[groups]) ? 0 : static_cast<int>(std::min(v[groups], 1e6));
}

namespace {

/// Relative sizes, made to add up to 1; equal ones where none are given.
std::vector<double> proportions(std::span<const double> relative, int groups_in_all) {
    std::vector<double> shares(relative.begin(), relative.end());
    if (shares.empty()) shares.assign(static_cast<std::size_t>(groups_in_all), 1);
    if (shares.empty()) return shares;
    const double largest = std::ranges::max(shares);  // their sum may overflow
    for (double& share : shares) share /= largest;
    const double sum = std::accumulate(shares.begin(), shares.end(), 0.0);
    for (double& share : shares) share /= sum;
    return shares;
}

/// The share of each of k groups; equal unless weights say otherwise.
std::vector<double> shares_of_groups(const Values& v) {
    return proportions(v.list(weights), group_count(v));
}

/// A total in whole numbers, by largest remainders: the sizes add up to it.
void share_total(Values& v) {
    const std::vector<double> shares = shares_of_groups(v);
    const auto size = v.set_list(sizes, shares.size());
    std::vector<std::size_t> by_remainder(shares.size());
    std::iota(by_remainder.begin(), by_remainder.end(), std::size_t{0});
    double left = v[total];
    for (std::size_t i = 0; i < shares.size(); ++i) left -= size[i] = std::floor(shares[i] * v[total]);
    const auto remainder = [&](std::size_t i) { return shares[i] * v[total] - size[i]; };
    std::stable_sort(by_remainder.begin(), by_remainder.end(),
                     [&](std::size_t a, std::size_t b) { return remainder(a) > remainder(b); });
    for (std::size_t i = 0; i < shares.size() && left > 0; ++i, --left) ++size[by_remainder[i]];
}

void same_size_each(Values& v) {
    const auto size = v.set_list(sizes, static_cast<std::size_t>(group_count(v)));
    std::fill(size.begin(), size.end(), v[n]);
}

}  // namespace

std::vector<double> proportions_of_groups(const Values& v) {
    return proportions(v.list(v.has(sizes) ? sizes : weights), group_count(v));
}

Check groups_agree(const Values& v) {
    const int k = group_count(v);
    const auto refusal = [](const Argument& a, std::string reason) {
        return Refusal{.argument = std::string(a.name), .reason = std::move(reason)};
    };
    if (k == 0) return {};
    const auto disagreement = [&](const Argument& a, std::size_t count) {
        return refusal(
            a, "says " + std::to_string(count) + " groups, and another argument says " + std::to_string(k));
    };
    for (const Argument* list : kOfGroups)
        if (const auto length = v.list(*list).size(); length != 0 && length != static_cast<std::size_t>(k))
            return disagreement(*list, length);
    if (v[groups] < k || v[groups] > k) return disagreement(groups, static_cast<std::size_t>(v[groups]));
    return {};
}

Sizes k_samples() {
    return {.ways = {{{n.means_in_words("Size of each group").said("{} in each group")}, same_size_each},
                     {{sizes}},
                     {{total}, share_total},
                     {{total, weights}, share_total}},
            .found = {sizes},
            .shares = {weights},
            .least = least_2,
            .share = shares_of_groups,
            .note = "n is the number in each group"};
}

}  // namespace statplan
