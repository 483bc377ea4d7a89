// statpower t-one, t-paired and t-ind: the t tests of means.
#include "statpower/means.h"

#include <cmath>
#include <memory>
#include <optional>

#include "answer.h"
#include "commands.h"
#include "options.h"
#include "orvcommon/mv.h"

namespace cli {

namespace {

using OrvCommon_940::OrvMV;
using Sizes = std::vector<double>;

/// What all three tests ask for. The effect is given as an effect size, or by means and standard deviations,
/// which each test has of its own.
struct Question {
    std::optional<double> es;
    bool one_sided = false;
    double alpha = 0.05;
    double target = 0.8;
    double half_width = 0;

    // The axes of a curve. An effect size from -5 and a ratio from 0 leave the range to the library.
    std::string over;
    double es_low = -5;
    double es_high = 1;
    int steps = 20;

    int directional() const { return one_sided ? 1 : 0; }
    double fraction() const {
        const bool is_effect_size = over == "es" || over == "n-es";
        const double lowest = es_low == -5 && !one_sided ? 0 : es_low;
        return is_effect_size ? step_fraction(steps, lowest, es_high) : step_fraction(steps, 0, 1);
    }
    const char* alternative() const { return one_sided ? "one-sided" : "two-sided"; }
};

CLI::Option* add_mean(CLI::App& command, const std::string& name, double& mean) {
    return command.add_option(name, mean, "Mean")->check(kFinite);
}

CLI::Option* add_spread(CLI::App& command, const std::string& name, double& sd) {
    return command.add_option(name, sd, "Standard deviation")->check(kPositive);
}

CLI::Option* add_count(CLI::App& command, const std::string& name, double& n) {
    return command.add_option(name, n, "Number of observations")->check(at_least(2));
}

/// Options that make sense together only.
void need_each_other(CLI::Option* option, const std::vector<CLI::Option*>& others) {
    for (auto* other : others) {
        option->needs(other);
        other->needs(option);
    }
}

/// The effect: --es, or the option `mean`, which asks for those that belong to it.
void choose_effect(CLI::App& command, Question& q, const std::string& mean_name, double& mean,
                   const std::vector<CLI::Option*>& belonging) {
    auto* effect = command.add_option_group("effect", "How large is the effect?");
    effect->require_option(1);
    effect->add_option("--es", q.es, "Standardised effect size")->check(kFinite);
    auto* option = add_mean(*effect, mean_name, mean);
    for (auto* other : belonging) option->needs(other);
}

void add_axes(CLI::App& command, Question& q, const std::vector<std::string>& axes) {
    q.over = axes.front();
    command.add_option("--over", q.over, "Axis of the curve, or the two axes of a surface")
        ->check(CLI::IsMember(axes))
        ->capture_default_str();
    command.add_option("--es-low", q.es_low, "First effect size; -5 in a two-sided test: 0")
        ->capture_default_str();
    command.add_option("--es-high", q.es_high, "Last effect size")->capture_default_str();
    command.add_option("--steps", q.steps, "Steps of an axis that is no sample size")
        ->check(at_least(1))
        ->capture_default_str();
}

/// A value, never 0, that only some axes need.
double needed(const std::string& option, double value, const Question& q) {
    if (value == 0) refuse(option, "is needed for a curve over " + q.over);
    return value;
}

/// A test with one sample size.
struct OneSize : Question {
    double n = 0;
    int n_low = 2;
    int n_high = 100;

    void add_sizes(CLI::App& command) { add_count(command, "--n", n)->required(); }
    void add_allocation(CLI::App&) {}
    Sizes sizes() const { return {n}; }
    void set_sizes(const Sizes& sizes) { n = sizes[0]; }

  protected:
    void add_size_axes(CLI::App& command) {
        add_axes(command, *this, {"n", "es", "n-es"});
        command.add_option("--n-low", n_low, "First sample size")->check(at_least(2))->capture_default_str();
        command.add_option("--n-high", n_high, "Last sample size")->capture_default_str();
        add_count(command, "--n", n);
    }
};

// ---- One sample ------------------------------------------------------------------------------------------

struct OneSample : OneSize {
    static constexpr const char* kTest = "one-sample t test";
    double mean = 0;
    double sd = 0;
    double null_mean = 0;

    void add_spreads(CLI::App& command) { add_spread(command, "--sd", sd)->required(); }
    void add_means(CLI::App& command) {
        add_mean(command, "--mean", mean)->required();
        add_spreads(command);
        add_null_mean(command);
    }
    void add_effect(CLI::App& command) {
        choose_effect(command, *this, "--mean", mean, {add_spread(command, "--sd", sd)});
        add_null_mean(command);
    }
    void add_curve(CLI::App& command) {
        add_size_axes(command);
        auto* option = add_mean(command, "--mean", mean);
        need_each_other(option, {add_spread(command, "--sd", sd)});
        add_null_mean(command);
        command.add_option("--es", es, "Standardised effect size")->check(kFinite)->excludes(option);
    }

    double power() const {
        if (es)
            return (one_sided ? PowerOneSampleDirectionalES : PowerOneSampleNondirectionalES)(n, *es, alpha);
        const auto of_means = one_sided ? PowerOneSampleDirectional : PowerOneSampleNondirectional;
        return of_means(n, mean, sd, null_mean, alpha);
    }
    Sizes search() const {
        if (es)
            return {(one_sided ? PowerReverseOneSampleDirectionalES : PowerReverseOneSampleNondirectionalES)(
                target, *es, alpha)};
        const auto of_means =
            one_sided ? PowerReverseOneSampleDirectional : PowerReverseOneSampleNondirectional;
        return {of_means(target, mean, sd, null_mean, alpha)};
    }
    double effect() const { return EffectSizeOneSample(mean, sd, null_mean); }
    double width() const { return HalfCIOneSampleMeans(n, sd, alpha); }
    Sizes search_width() const { return {PowerReversebyHalfCIOneSampleMeans(half_width, sd, alpha)}; }

    Table curve() const {
        if (over == "es")
            return table_of(
                PlotESOneSample(directional(), needed("--n", n, *this), es_low, es_high, alpha, fraction()),
                "es", "power");
        if (over == "n-es")
            return table_of(
                PlotNaESOneSample(n_low, n_high, directional(), es_low, es_high, alpha, fraction()), "es",
                "n", "power");
        if (es) return table_of(PlotNOneSampleFES(n_low, n_high, directional(), *es, alpha), "n", "power");
        needed("--es or --mean", sd, *this);
        return table_of(PlotNOneSample(n_low, n_high, directional(), 0, mean, sd, null_mean, alpha), "n",
                        "power");
    }

  private:
    void add_null_mean(CLI::App& command) {
        command.add_option("--null", null_mean, "Mean under the null hypothesis")
            ->check(kFinite)
            ->capture_default_str();
    }
};

// ---- Related samples -------------------------------------------------------------------------------------

struct Paired : OneSize {
    static constexpr const char* kTest = "related-samples t test";
    double mean1 = 0;
    double sd1 = 0;
    double mean2 = 0;
    double sd2 = 0;
    double corr = 0;

    void add_spreads(CLI::App& command) {
        for (auto* option : spreads(command)) option->required();
    }
    void add_means(CLI::App& command) {
        add_mean(command, "--mean1", mean1)->required();
        add_mean(command, "--mean2", mean2)->required();
        add_spreads(command);
    }
    void add_effect(CLI::App& command) { choose_effect(command, *this, "--mean1", mean1, others(command)); }
    void add_curve(CLI::App& command) {
        add_size_axes(command);
        auto* first = add_mean(command, "--mean1", mean1);
        need_each_other(first, others(command));
        command.add_option("--es", es, "Standardised effect size")->check(kFinite)->excludes(first);
    }

    double power() const {
        if (es) return (one_sided ? PowerRelatedDirectionalES : PowerRelatedNondirectionalES)(n, *es, alpha);
        check_correlation();
        const auto of_means = one_sided ? PowerRelatedDirectional : PowerRelatedNondirectional;
        return of_means(n, mean1, sd1, mean2, sd2, corr, alpha);
    }
    Sizes search() const {
        if (es)
            return {(one_sided ? PowerReverseRelatedDirectionalES : PowerReverseRelatedNondirectionalES)(
                target, *es, alpha)};
        check_correlation();
        const auto of_means = one_sided ? PowerReverseRelatedDirectional : PowerReverseRelatedNondirectional;
        return {of_means(target, mean1, sd1, mean2, sd2, corr, alpha)};
    }
    double effect() const { return EffectSizeRelated(mean1, sd1, mean2, sd2, corr); }
    double width() const { return HalfCIRelatedMeans(n, sd1, sd2, corr, alpha); }
    Sizes search_width() const {
        return {PowerReversebyHalfCIRelatedMeans(half_width, sd1, sd2, corr, alpha)};
    }

    Table curve() const {
        if (over == "es")
            return table_of(
                PlotESRelated(directional(), needed("--n", n, *this), es_low, es_high, alpha, fraction()),
                "es", "power");
        if (over == "n-es")
            return table_of(PlotNaESRelated(n_low, n_high, directional(), es_low, es_high, alpha, fraction()),
                            "es", "n", "power");
        if (es) return table_of(PlotNRelatedFES(n_low, n_high, directional(), *es, alpha), "n", "power");
        needed("--es or --mean1", sd1, *this);
        check_correlation();
        return table_of(PlotNRelated(n_low, n_high, directional(), 0, mean1, sd1, mean2, sd2, corr, alpha),
                        "n", "power");
    }

  private:
    void check_correlation() const {
        if (corr == 0) refuse("--corr", "must not be 0");
        const bool perfect = std::abs(corr) == 1 && (sd1 == sd2 || (one_sided && corr == 1));
        if (perfect) refuse("--corr", "must not be perfect for these standard deviations and this direction");
    }
    std::vector<CLI::Option*> spreads(CLI::App& command) {
        return {add_spread(command, "--sd1", sd1), add_spread(command, "--sd2", sd2),
                command.add_option("--corr", corr, "Correlation of the two measurements, not 0")
                    ->check(kCorrelation)};
    }
    std::vector<CLI::Option*> others(CLI::App& command) {
        auto options = spreads(command);
        options.push_back(add_mean(command, "--mean2", mean2));
        return options;
    }
};

// ---- Independent samples ---------------------------------------------------------------------------------

struct Independent : Question {
    static constexpr const char* kTest = "independent-samples t test";
    double n1 = 0;
    double n2 = 0;
    double ratio = 1;
    double mean1 = 0;
    double sd1 = 0;
    double mean2 = 0;
    double sd2 = 0;
    double total = 0;
    double ratio_low = 0;
    double ratio_high = 0;
    double diff_low = 0;
    double diff_high = 0;
    double diff_step = 0;

    void add_sizes(CLI::App& command) {
        add_count(command, "--n1", n1)->required();
        add_count(command, "--n2", n2)->required();
    }
    void add_allocation(CLI::App& command) {
        command.add_option("--ratio", ratio, "Size of group 2 over that of group 1")
            ->check(kPositive)
            ->capture_default_str();
    }
    void add_spreads(CLI::App& command) {
        add_spread(command, "--sd1", sd1)->required();
        add_spread(command, "--sd2", sd2)->required();
    }
    void add_means(CLI::App& command) {
        add_mean(command, "--mean1", mean1)->required();
        add_mean(command, "--mean2", mean2)->required();
        add_spread(command, "--sd", sd1)->required();
    }
    void add_effect(CLI::App& command) { choose_effect(command, *this, "--mean1", mean1, others(command)); }
    void add_curve(CLI::App& command) {
        add_axes(command, *this, {"ratio", "es", "difference", "ratio-es", "ratio-difference"});
        add_count(command, "--n1", n1);
        add_count(command, "--n2", n2);
        command.add_option("--total", total, "Total sample size, for a ratio")->check(at_least(4));
        command.add_option("--ratio-low", ratio_low, "First ratio; 0: all that the total allows")
            ->capture_default_str();
        command.add_option("--ratio-high", ratio_high, "Last ratio; 0: all that the total allows")
            ->capture_default_str();
        command.add_option("--diff-low", diff_low, "First difference of the means")->capture_default_str();
        command.add_option("--diff-high", diff_high, "Last one; not above the first: by the means")
            ->capture_default_str();
        command.add_option("--diff-step", diff_step, "Step of the differences")->check(kPositive);
        auto* first = add_mean(command, "--mean1", mean1);
        need_each_other(first, others(command));
        command.add_option("--es", es, "Standardised effect size")->check(kFinite)->excludes(first);
    }

    Sizes sizes() const { return {n1, n2}; }
    void set_sizes(const Sizes& sizes) {
        n1 = sizes[0];
        n2 = sizes[1];
    }

    double power() const {
        if (es)
            return (one_sided ? PowerIndependentDirectionalES : PowerIndependentNondirectionalES)(n1, n2, *es,
                                                                                                  alpha);
        const auto of_means = one_sided ? PowerIndependentDirectional : PowerIndependentNondirectional;
        return of_means(n1, mean1, sd1, n2, mean2, sd2, alpha);
    }
    Sizes search() const {
        Sizes sizes;
        if (es)
            (one_sided ? PowerReverseIndependentDirectionalES : PowerReverseIndependentNondirectionalES)(
                target, ratio, *es, alpha, sizes);
        else
            (one_sided ? PowerReverseIndependentDirectional : PowerReverseIndependentNondirectional)(
                target, ratio, mean1, sd1, mean2, sd2, alpha, sizes);
        return sizes;
    }
    double effect() const { return EffectSizeIndependent(mean1, mean2, sd1); }
    double width() const { return HalfCIIndependentMeans(n1, sd1, n2, sd2, alpha); }
    Sizes search_width() const {
        Sizes sizes;
        PowerReversebyHalfCIIndependentMeans(half_width, ratio, sd1, sd2, alpha, sizes);
        return sizes;
    }

    Table curve() const {
        if (over == "es")
            return table_of(PlotESIndepended(directional(), needed("--n1", n1, *this),
                                             needed("--n2", n2, *this), es_low, es_high, alpha, fraction()),
                            "es", "power");
        if (over == "difference")
            return table_of(
                PlotMeanDiffIndepended(directional(), needed("--n1", n1, *this), mean1, sd1_needed(),
                                       needed("--n2", n2, *this), mean2, sd2, diff_low, diff_high, alpha,
                                       needed("--diff-step", diff_step, *this)),
                "difference", "power");
        needed("--total", total, *this);
        check_ratios();
        if (over == "ratio-es")
            return table_of(PlotRatioaESIndependent(directional(), total, ratio_low, ratio_high, es_low,
                                                    es_high, alpha, fraction()),
                            "ratio", "es", "power");
        if (over == "ratio-difference")
            return table_of(
                PlotRatioaMeanDiffIndependent(directional(), total, mean1, sd1_needed(), mean2, sd2,
                                              ratio_low, ratio_high, diff_low, diff_high, alpha, fraction()),
                "ratio", "difference", "power");
        if (es)
            return table_of(
                PlotRatioIndependentFES(directional(), total, *es, ratio_low, ratio_high, alpha, fraction()),
                "ratio", "power");
        return table_of(PlotRatioIndependent(directional(), total, mean1, sd1_needed(), mean2, sd2, ratio_low,
                                             ratio_high, alpha, fraction()),
                        "ratio", "power");
    }

  private:
    /// Beyond these ratios a group has one observation or less, and the power does not exist.
    void check_ratios() const {
        if (ratio_low == 0 || ratio_high == 0) return;
        if (!(ratio_low > 1 / (total - 1)))
            refuse("--ratio-low", "leaves one observation or less in group 2");
        if (!(ratio_high < total - 1)) refuse("--ratio-high", "leaves one observation or less in group 1");
    }
    double sd1_needed() const { return needed(over == "ratio" ? "--es or --mean1" : "--mean1", sd1, *this); }
    std::vector<CLI::Option*> others(CLI::App& command) {
        return {add_spread(command, "--sd1", sd1), add_mean(command, "--mean2", mean2),
                add_spread(command, "--sd2", sd2)};
    }
};

// ---- The subcommands of each test ------------------------------------------------------------------------

/// Whole sizes from those that a search has found.
Sizes whole(Sizes found) {
    for (double& n : found) {
        if (OrvMV::IsMissing(n)) throw NoAnswer("no sample size reaches the target: is there an effect?");
        n = std::ceil(n);
    }
    return found;
}

/// One size as a number, two as a list.
Report answer(const Sizes& sizes) {
    return sizes.size() == 1 ? Report(sizes.front()) : Report(sizes);
}

template <class Test>
double power_of(const Test& t) {
    const double power = t.power();
    if (OrvMV::IsMissing(power)) throw NoAnswer("the test does not exist for these values");
    return power;
}

void add_direction(CLI::App& command, Question& q) {
    command.add_flag("--one-sided", q.one_sided, "One-sided test; two-sided unless given");
    add_alpha(command, q.alpha);
}

template <class Test>
void add_power(CLI::App& test) {
    auto t = std::make_shared<Test>();
    auto* command = add_command(test, "power", "Power of a design", [t] {
        return Report{{"test", Test::kTest},
                      {"alternative", t->alternative()},
                      {"sample_size", answer(t->sizes())},
                      {"alpha", t->alpha},
                      {"power", power_of(*t)}};
    });
    t->add_sizes(*command);
    t->add_effect(*command);
    add_direction(*command, *t);
}

template <class Test>
void add_size(CLI::App& test) {
    auto t = std::make_shared<Test>();
    auto* command = add_command(test, "size", "Sample size that reaches a power", [t] {
        t->set_sizes(whole(t->search()));
        return Report{{"test", Test::kTest}, {"alternative", t->alternative()},   {"target_power", t->target},
                      {"alpha", t->alpha},   {"sample_size", answer(t->sizes())}, {"power", power_of(*t)}};
    });
    t->add_allocation(*command);
    t->add_effect(*command);
    add_target_power(*command, t->target);
    add_direction(*command, *t);
}

template <class Test>
void add_effect(CLI::App& test) {
    auto t = std::make_shared<Test>();
    auto* command = add_command(test, "effect", "Standardised effect size", [t] {
        return Report{{"effect", t->effect()}};
    });
    t->add_means(*command);
}

template <class Test>
void add_half_width(CLI::App& test) {
    auto t = std::make_shared<Test>();
    auto* command = add_command(test, "halfwidth", "Half-width of the confidence interval", [t] {
        return Report{
            {"sample_size", answer(t->sizes())}, {"confidence", 1 - t->alpha}, {"half_width", t->width()}};
    });
    t->add_sizes(*command);
    t->add_spreads(*command);
    add_alpha(*command, t->alpha);
}

template <class Test>
void add_half_width_size(CLI::App& test) {
    auto t = std::make_shared<Test>();
    auto* command = add_command(test, "halfwidth-size", "Sample size that reaches a half-width", [t] {
        t->set_sizes(whole(t->search_width()));
        // The search ends within 1e-9 of the root; where group 2 is raised to two observations, or the widths
        // are too small to tell from zero, it can miss the target.
        if (t->width() > t->half_width * (1 + 1e-9))
            throw NoAnswer("the search found no size that reaches it");
        return Report{{"target_half_width", t->half_width},
                      {"confidence", 1 - t->alpha},
                      {"sample_size", answer(t->sizes())},
                      {"half_width", t->width()}};
    });
    command->add_option("--halfwidth", t->half_width, "Half-width to reach")->required()->check(kPositive);
    t->add_allocation(*command);
    t->add_spreads(*command);
    add_alpha(*command, t->alpha);
}

template <class Test>
void add_curve(CLI::App& test) {
    auto t = std::make_shared<Test>();
    auto* command = add_curve_command(test, "curve", "Power curve or surface", [t] { return t->curve(); });
    t->add_curve(*command);
    add_direction(*command, *t);
}

template <class Test>
void add_test(CLI::App& app, const std::string& name, const std::string& description) {
    auto* test = app.add_subcommand(name, description);
    test->require_subcommand(1);
    add_power<Test>(*test);
    add_size<Test>(*test);
    add_effect<Test>(*test);
    add_half_width<Test>(*test);
    add_half_width_size<Test>(*test);
    add_curve<Test>(*test);
}

}  // namespace

void add_means(CLI::App& app) {
    add_test<OneSample>(app, "t-one", "One-sample t test of a mean");
    add_test<Paired>(app, "t-paired", "Related-samples t test of two means");
    add_test<Independent>(app, "t-ind", "Independent-samples t test of two means");
}

}  // namespace cli
