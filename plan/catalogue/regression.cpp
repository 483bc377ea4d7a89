// Multiple linear regression: does a set of predictors add to the fit?
#include "statpower/regression.h"
#include "plan/vocabulary.h"

namespace statplan {

namespace {

constexpr Range kProportion{.low = 0, .high = 1, .low_open = false};

const Argument predictors{.name = "predictors",
                          .meaning = "Number of predictors of the model",
                          .unit = "predictors",
                          .range = kSize,
                          .kind = Kind::whole,
                          .phrase = "{} predictors"};
const Argument tested{.name = "tested",
                      .meaning = "Number of predictors tested, all unless given",
                      .unit = "predictors",
                      .range = kSize,
                      .kind = Kind::whole,
                      .phrase = "{} of them tested"};
const Argument r2_reduced{.name = "r2-reduced",
                          .meaning = "R squared of the model without the predictors tested",
                          .unit = "proportion",
                          .range = kProportion,
                          .phrase = "an R squared of {} without the predictors tested"};
const Argument r2{.name = "r2",
                  .meaning = "R squared of the model: proportion of the variance that all predictors explain",
                  .unit = "proportion",
                  .range = kProportion,
                  .null = Null{0},
                  .phrase = "an R squared of {}"};
const Argument partial_r2{
    .name = "partial-r2",
    .meaning = "Partial R squared: proportion that the predictors tested explain of what the others leave",
    .unit = "proportion",
    .range = kProportion,
    .null = Null{0},
    .phrase = "a partial R squared of {}"};

enum Model { fixed_predictors, random_predictors };
const Argument model{
    .name = "model",
    .meaning = "Predictors with fixed values, or random ones (jointly normal with the response)",
    .kind = Kind::choice,
    .otherwise = fixed_predictors,
    .choices = {"fixed", "random"}};
const Argument intercept{.name = "intercept",
                         .meaning = "Has the model an intercept?",
                         .kind = Kind::choice,
                         .otherwise = yes,
                         .choices = {"no", "yes"}};

void all_tested(Values& v) {
    v.set(tested, v[predictors]);
}
void from_partial_r2(Values& v) {
    v.set(f2, v[partial_r2] / (1 - v[partial_r2]));
}

double power_of(const Values& v, Cancel*) {
    const double enough = 1e15;  // the power is 1, and the proportion explained below 1
    return probability(PowerbymlrwES(v.is(model, random_predictors), v.is(intercept, yes), v[n],
                                     v[predictors], v[tested], std::min(v[f2], enough), v[alpha]));
}

Check impossible(const Values& v) {
    const auto refusal = [](const Argument& a, std::string reason) {
        return Refusal{.argument = std::string(a.name), .reason = std::move(reason)};
    };
    if (v[tested] > v[predictors]) return refusal(tested, "is more than there are predictors");
    if (v[tested] == v[predictors] && v[r2_reduced] > 0)
        return refusal(r2_reduced, "is 0 where all predictors are tested; leave it out, or test fewer");
    if (v[r2] < v[r2_reduced])
        return refusal(r2, "is below r2-reduced, but more predictors never explain less");
    return {};
}

const Entry regression{{
    .name = "regression",
    .title = "Multiple linear regression",
    .family = Family::regression,
    .study = "A measurement and its predictors: do all of them, or a set of them, explain any of it?",
    .phrase = "multiple regression F test",
    .sizes = one_sample([](const Values& v) { return v[predictors] + 1 + v[intercept]; }),
    .power = {.ways = {{{r2, predictors}, [](Values& v) { all_tested(v), v.set(f2, v[r2] / (1 - v[r2])); }},
                       {{r2.null_at(r2_reduced), r2_reduced, predictors, tested},
                        [](Values& v) { v.set(f2, (v[r2] - v[r2_reduced]) / (1 - v[r2])); }},
                       {{f2, predictors}, all_tested},
                       {{f2, predictors, tested}},
                       {{partial_r2, predictors, tested}, from_partial_r2}},
              .options = {model, intercept, alpha},
              .value = power_of,
              .contradiction = impossible},
    .effect = [](const Values& v) { return v[f2]; },
    .effects = {{f2, [](const Values& v) { return v[f2]; }},
                {partial_r2, [](const Values& v) { return 1 / (1 + 1 / v[f2]); }}},
    .method = [](const Values& v) -> std::string {
        return v.is(model, random_predictors) ? "distribution of R squared for jointly normal predictors"
                                              : "noncentral F distribution";
    },
    .performed = [](const Values& v) -> std::string {
        return v.is(model, random_predictors) ? "multiple regression F test with random predictors"
                                              : "multiple regression F test";
    },
    .notes = {"r2, r2-reduced and partial-r2 are squares; the noncentrality for fixed predictors is n f2"},
    .sources = {"J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 9",
                "R. A. Fisher, Proc. R. Soc. A 121 (1928), 654-673 (random predictors)"},
    .examples = {{"Five predictors, all tested, that explain a tenth of the variance, 95 observations",
                  "regression power --r2 0.1 --predictors 5 --n 95", "power", 0.673585770914, 1e-9,
                  "R: noncentral pf() with 5 and 89 degrees of freedom"},
                 {"A medium effect f2 of 0.15 of five predictors, power 0.8",
                  "regression size --f2 0.15 --predictors 5", "n", 92, 0,
                  "R: the least n whose noncentral pf() reaches 0.8 (0.804 at 92, 0.799 at 91)"}},
}};

}  // namespace

}  // namespace statplan
