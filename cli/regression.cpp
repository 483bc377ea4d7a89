// statpower regression: the F test of predictors of a multiple linear regression.
#include "statpower/regression.h"

#include <cmath>
#include <memory>

#include "answer.h"
#include "commands.h"
#include "options.h"
#include "orvcommon/mv.h"

namespace cli {

namespace {

/// What the user says of a design. The effect is given in one of three ways: the multiple correlation, the
/// squared ones of the full and the reduced model, or f^2.
struct Design {
    double n = 0;
    double predictors = 0;
    double tested = 0;
    bool random = false;
    bool no_intercept = false;
    double r = 0;
    double r2 = 0;
    double r2_reduced = 0;
    double f2 = 0;
    double alpha = 0.05;
    double target = 0.8;
    std::string over;
    int from = 0;
    int to = 0;
    double step = 0.05;

    bool intercept() const { return !no_intercept; }
    double q() const { return tested > 0 ? tested : predictors; }
    /// Without a reduced model the library reads a correlation, not its square.
    double full() const { return r2_reduced > 0 ? r2 : r2 > 0 ? std::sqrt(r2) : r; }

    double power() const {
        if (f2 > 0) return PowerbymlrwES(random, intercept(), n, predictors, q(), f2, alpha);
        return Powerbymlr(random, intercept(), n, predictors, q(), full(), r2_reduced, alpha);
    }
    double size() const {
        if (f2 > 0) return PowerReversebymlrwES(random, intercept(), target, predictors, q(), f2, alpha);
        return PowerReversebymlr(random, intercept(), target, predictors, q(), full(), r2_reduced, alpha);
    }
    XYPlot over_size() const {
        if (f2 > 0) return PlotNmlrFES(random, intercept(), from, to, predictors, q(), f2, alpha);
        return PlotNmlr(random, intercept(), from, to, predictors, q(), full(), r2_reduced, alpha);
    }

    void check_predictors() const {
        if (q() > predictors) refuse("--tested", "must not be greater than --predictors");
        if (r2_reduced > 0 && !(r2_reduced <= r2)) refuse("--r2-reduced", "must not be greater than --r2");
    }
    void check_size() const {
        if (!(n >= predictors + 1 + intercept())) refuse("--n", "must leave an error degree of freedom");
    }
};

const char* const kTest = "multiple regression, F test of predictors";

CLI::Option* add_n(CLI::App& command, Design& d) {
    return command.add_option("--n", d.n, "Sample size")->check(kPositive);
}

/// Options of the model and the test, and the group of those that say how large the effect is.
CLI::Option_group* add_model(CLI::App& command, Design& d) {
    command.add_option("--predictors", d.predictors, "Number of predictors of the full model")
        ->required()
        ->check(at_least(1));
    command.add_option("--tested", d.tested, "Number of predictors tested; all unless given")
        ->check(at_least(1));
    command.add_flag("--random", d.random, "Random (jointly normal) predictors; fixed unless given");
    command.add_flag("--no-intercept", d.no_intercept, "Model without an intercept");
    add_alpha(command, d.alpha);
    auto* effect = command.add_option_group("effect", "How large is the effect?");
    effect->add_option("--r", d.r, "Multiple correlation")->check(kBetween0And1);
    auto* r2 = effect->add_option("--r2", d.r2, "Squared multiple correlation of the full model")
                   ->check(kBetween0And1);
    effect->add_option("--f2", d.f2, "Effect size f squared")->check(kPositive);
    command
        .add_option("--r2-reduced", d.r2_reduced,
                    "Squared multiple correlation without the tested predictors (with --r2)")
        ->check(kBetween0And1)
        ->needs(r2);
    return effect;
}

void add_power(CLI::App& regression) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(regression, "power", "Power of a sample size", [d] {
        d->check_predictors();
        d->check_size();
        return Report{{"test", kTest}, {"n", d->n}, {"alpha", d->alpha}, {"power", d->power()}};
    });
    add_n(*command, *d)->required();
    add_model(*command, *d)->require_option(1);
}

void add_size(CLI::App& regression) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(regression, "size", "Sample size that reaches a power", [d] {
        d->check_predictors();
        const double exact = d->size();
        if (OrvCommon_940::OrvMV::IsMissing(exact))
            throw NoAnswer("no sample size reaches the power: is there an effect?");
        d->n = std::ceil(exact);
        return Report{{"test", kTest},
                      {"target_power", d->target},
                      {"alpha", d->alpha},
                      {"n", d->n},
                      {"power", d->power()}};
    });
    add_target_power(*command, d->target);
    add_model(*command, *d)->require_option(1);
}

void add_curve(CLI::App& regression) {
    auto d = std::make_shared<Design>();
    auto* command = add_curve_command(regression, "curve", "Power against the size or the effect", [d] {
        d->check_predictors();
        if (d->over == "n") {
            if (!(d->full() > 0 || d->f2 > 0)) refuse("--over", "n needs an effect: --r, --r2 or --f2");
            if (!(d->from >= d->predictors + 1 + d->intercept() && d->to >= d->from &&
                  d->to <= d->predictors + 5000))
                refuse("--from",
                       "and --to must be whole sizes in order that leave an error degree of freedom, "
                       "at most 5000 above the number of predictors");
            return table_of(d->over_size(), "n", "power");
        }
        d->check_size();
        if (d->over == "r")
            return table_of(
                PlotCorrmlr(d->random, d->intercept(), d->n, d->predictors, d->q(), d->alpha, d->step), "r",
                "power");
        return table_of(PlotESmlr(d->random, d->intercept(), d->n, d->predictors, d->q(), d->alpha, d->step),
                        "f2", "power");
    });
    command->add_option("--over", d->over, "What varies: n, the multiple correlation r, or f2")
        ->required()
        ->check(CLI::IsMember({"n", "r", "f2"}));
    command->add_option("--from", d->from, "First sample size, with --over n");
    command->add_option("--to", d->to, "Last sample size, with --over n");
    command->add_option("--step", d->step, "Step of the effect, up to 0.5")
        ->check(kStep)
        ->capture_default_str();
    add_n(*command, *d);
    add_model(*command, *d)->require_option(0, 1);
}

}  // namespace

void add_regression(CLI::App& app) {
    auto* regression = app.add_subcommand("regression", "Multiple linear regression: F test of predictors");
    regression->require_subcommand(1);
    add_power(*regression);
    add_size(*regression);
    add_curve(*regression);
}

}  // namespace cli
