// statpower pearson, spearman, partial: tests of one correlation.
#include "statpower/correlation.h"

#include <cmath>
#include <limits>
#include <memory>

#include "answer.h"
#include "commands.h"
#include "options.h"
#include "orvcommon/mv.h"

namespace cli {

namespace {

/// What the user says of a design. Each test reads its own flags of it.
struct Design {
    double n = 0;
    double r = 0;
    double r0 = 0;
    double alpha = 0.05;
    bool one_sided = false;
    bool bias = false;  // Pearson
    int method = 0;     // Spearman
    double k = 0;       // partial
    double target = 0.8;
    double half_width = 0;
    std::string over;
    int from = 0;
    int to = 0;
    double step = 0.05;

    double smallest_size() const { return 3 + k; }
    void check_size() const {
        if (!(n > smallest_size()))
            refuse("--n", "is needed, and must be greater than 3 plus the variables partialled out, if any");
    }
};

// ---- The three tests: their flags, and the library's functions with these flags --------------------------

struct Pearson {
    static constexpr const char* kCommand = "pearson";
    static constexpr const char* kName = "Pearson's correlation";
    static void add_flags(CLI::App& command, Design& d) {
        command.add_flag("--bias-correction", d.bias, "Correct mean and variance of Fisher's z");
    }
    static double power(const Design& d) {
        return PowerbyOneSampPearson(d.one_sided, d.bias, d.n, d.r, d.r0, d.alpha);
    }
    static double size(const Design& d) {
        return PowerReversebyOneSampPearson(d.one_sided, d.bias, nullptr, d.target, d.r, d.r0, d.alpha);
    }
    static double half_width(const Design& d) { return HalfCIOneSampPearson(d.bias, d.n, d.r, d.alpha); }
    static double half_width_size(const Design& d) {
        return PowerReversebyHalfCIOneSampPearson(d.bias, nullptr, d.half_width, d.r, d.alpha);
    }
    static XYPlot over_size(const Design& d) {
        return PlotNOneSampPearson(d.one_sided, d.bias, d.from, d.to, d.n, d.r, d.r0, d.alpha);
    }
    static XYPlot over_null(const Design& d) {
        return PlotNullOneSampPearson(d.one_sided, d.bias, d.n, d.r, d.alpha, d.step);
    }
    static XYPlot over_alternative(const Design& d) {
        return PlotAlterOneSampPearson(d.one_sided, d.bias, d.n, d.r0, d.alpha, d.step);
    }
    static XYPlot over_difference(const Design& d) {
        return PlotRiskDiffOneSampPearson(d.one_sided, d.bias, d.n, d.r0, d.alpha, d.step);
    }
};

struct Spearman {
    static constexpr const char* kCommand = "spearman";
    static constexpr const char* kName = "Spearman's rank correlation";
    static void add_flags(CLI::App& command, Design& d) {
        command
            .add_option("--method", d.method,
                        "Variance of z: 0 Bonett and Wright, 1 Fieller et al., 2 Caruso and Cliff")
            ->check(CLI::Range(0, 2))
            ->capture_default_str();
    }
    static double power(const Design& d) {
        return PowerbyOneSampSpearman(d.method, d.one_sided, d.n, d.r, d.r0, d.alpha);
    }
    static double size(const Design& d) {
        return PowerReversebyOneSampSpearman(d.method, d.one_sided, d.target, d.r, d.r0, d.alpha);
    }
    static double half_width(const Design& d) { return HalfCIOneSampSpearman(d.method, d.n, d.r, d.alpha); }
    static double half_width_size(const Design& d) {
        return PowerReversebyHalfCIOneSampSpearman(d.method, nullptr, d.half_width, d.r, d.alpha);
    }
    static XYPlot over_size(const Design& d) {
        return PlotNOneSampSpearman(d.method, d.one_sided, d.from, d.to, d.n, d.r, d.r0, d.alpha);
    }
    static XYPlot over_null(const Design& d) {
        return PlotNullOneSampSpearman(d.method, d.one_sided, d.n, d.r, d.alpha, d.step);
    }
    static XYPlot over_alternative(const Design& d) {
        return PlotAlterOneSampSpearman(d.method, d.one_sided, d.n, d.r0, d.alpha, d.step);
    }
    static XYPlot over_difference(const Design& d) {
        return PlotRiskDiffOneSampSpearman(d.method, d.one_sided, d.n, d.r0, d.alpha, d.step);
    }
};

struct Partial {
    static constexpr const char* kCommand = "partial";
    static constexpr const char* kName = "partial correlation";
    static void add_flags(CLI::App& command, Design& d) {
        command.add_option("--partialled-out", d.k, "Number of variables partialled out")
            ->required()
            ->check(at_least(0));
    }
    static double power(const Design& d) {
        return PowerbyOneSampPartial(d.one_sided, d.n, d.k, d.r, d.r0, d.alpha);
    }
    static double size(const Design& d) {
        return PowerReversebyOneSampPartial(d.one_sided, d.target, d.k, d.r, d.r0, d.alpha);
    }
    static double half_width(const Design& d) { return HalfCIOneSampPartial(d.n, d.k, d.r, d.alpha); }
    static double half_width_size(const Design& d) {
        return PowerReversebyHalfCIOneSampPartial(nullptr, d.half_width, d.k, d.r, d.alpha);
    }
    static XYPlot over_size(const Design& d) {
        return PlotNOneSampPartial(d.one_sided, d.from, d.to, d.n, d.k, d.r, d.r0, d.alpha);
    }
    static XYPlot over_null(const Design& d) {
        return PlotNullOneSampPartial(d.one_sided, d.n, d.k, d.r, d.alpha, d.step);
    }
    static XYPlot over_alternative(const Design& d) {
        return PlotAlterOneSampPartial(d.one_sided, d.n, d.k, d.r0, d.alpha, d.step);
    }
    static XYPlot over_difference(const Design& d) {
        return PlotRiskDiffOneSampPartial(d.one_sided, d.n, d.k, d.r0, d.alpha, d.step);
    }
};

// ---- Options ---------------------------------------------------------------------------------------------

CLI::Option* add_size(CLI::App& command, Design& d) {
    return command.add_option("--n", d.n, "Sample size")->check(kPositive);
}

CLI::Option* add_alternative(CLI::App& command, Design& d) {
    return command.add_option("--r", d.r, "Correlation under the alternative")->check(kCorrelation);
}

template <class Test>
void add_test_options(CLI::App& command, Design& d) {
    command.add_option("--null", d.r0, "Correlation under the null hypothesis")
        ->check(kCorrelation)
        ->capture_default_str();
    command.add_flag("--one-sided", d.one_sided, "One-sided test");
    Test::add_flags(command, d);
    add_alpha(command, d.alpha);
}

// ---- Commands --------------------------------------------------------------------------------------------

template <class Test>
void add_power(CLI::App& test) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(test, "power", "Power of a sample size", [d] {
        d->check_size();
        return Report{{"test", Test::kName}, {"n", d->n}, {"alpha", d->alpha}, {"power", Test::power(*d)}};
    });
    add_size(*command, *d)->required();
    add_alternative(*command, *d)->required();
    add_test_options<Test>(*command, *d);
}

template <class Test>
void add_size_for_power(CLI::App& test) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(test, "size", "Sample size that reaches a power", [d] {
        const double exact = Test::size(*d);
        if (OrvCommon_940::OrvMV::IsMissing(exact))
            throw NoAnswer("no sample size reaches the power: do the correlations differ?");
        d->n = std::ceil(exact);
        return Report{{"test", Test::kName},
                      {"target_power", d->target},
                      {"alpha", d->alpha},
                      {"n", d->n},
                      {"power", Test::power(*d)}};
    });
    add_alternative(*command, *d)->required();
    add_target_power(*command, d->target);
    add_test_options<Test>(*command, *d);
}

template <class Test>
void add_half_width(CLI::App& test) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(test, "halfwidth", "Half-width of the confidence interval", [d] {
        d->check_size();
        return Report{{"n", d->n}, {"confidence", 1 - d->alpha}, {"half_width", Test::half_width(*d)}};
    });
    add_size(*command, *d)->required();
    add_alternative(*command, *d)->required()->description("Correlation");
    Test::add_flags(*command, *d);
    add_alpha(*command, d->alpha);
}

template <class Test>
void add_half_width_size(CLI::App& test) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(test, "halfwidth-size", "Sample size that reaches a half-width", [d] {
        d->n = Test::half_width_size(*d);
        if (OrvCommon_940::OrvMV::IsMissing(d->n) || Test::half_width(*d) > d->half_width * (1 + 1e-9))
            throw NoAnswer("no sample size reaches the half-width");
        return Report{{"target_half_width", d->half_width},
                      {"confidence", 1 - d->alpha},
                      {"n", d->n},
                      {"half_width", Test::half_width(*d)}};
    });
    command->add_option("--halfwidth", d->half_width, "Half-width to reach")->required()->check(kPositive);
    add_alternative(*command, *d)->required()->description("Correlation");
    Test::add_flags(*command, *d);
    add_alpha(*command, d->alpha);
}

template <class Test>
void add_curve(CLI::App& test) {
    auto d = std::make_shared<Design>();
    d->r = std::numeric_limits<double>::quiet_NaN();
    auto* command = add_curve_command(test, "curve", "Power against the size or a correlation", [d] {
        if ((d->over == "n" || d->over == "null") && std::isnan(d->r)) refuse("--r", "is needed");
        if (d->over == "n") {
            if (!(d->from >= d->k + 4 && d->to > d->from && d->to <= d->k + 5000))
                refuse("--from",
                       "and --to must be whole sizes in order, from 4 and up to 5000, both plus the "
                       "variables partialled out");
            d->n = d->from;
            return table_of(Test::over_size(*d), "n", "power");
        }
        d->check_size();
        if (d->over == "null") return table_of(Test::over_null(*d), "null", "power");
        if (d->over == "r") return table_of(Test::over_alternative(*d), "r", "power");
        return table_of(Test::over_difference(*d), "difference", "power");
    });
    command->add_option("--over", d->over, "What varies: n, r, null, or the difference of r and null")
        ->required()
        ->check(CLI::IsMember({"n", "r", "null", "difference"}));
    command->add_option("--from", d->from, "First sample size, with --over n");
    command->add_option("--to", d->to, "Last sample size, with --over n");
    command->add_option("--step", d->step, "Step of a correlation, up to 0.5")
        ->check(kStep)
        ->capture_default_str();
    add_size(*command, *d);
    add_alternative(*command, *d);
    add_test_options<Test>(*command, *d);
}

template <class Test>
void add_test(CLI::App& app) {
    auto* test = app.add_subcommand(Test::kCommand, std::string("Test of one ") + Test::kName);
    test->require_subcommand(1);
    add_power<Test>(*test);
    add_size_for_power<Test>(*test);
    add_half_width<Test>(*test);
    add_half_width_size<Test>(*test);
    add_curve<Test>(*test);
}

}  // namespace

void add_correlations(CLI::App& app) {
    add_test<Pearson>(app);
    add_test<Spearman>(app);
    add_test<Partial>(app);
}

}  // namespace cli
