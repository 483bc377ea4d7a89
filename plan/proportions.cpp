#include "plan/proportions.h"

#include <string>

namespace statplan {

Tails tails_of(const Values& v, double effect) {
    if (v.is(alternative, two_sided)) return Tails::both;
    if (v.is(alternative, one_sided)) return effect > 0 ? Tails::large : Tails::small;
    return v.is(alternative, greater) ? Tails::large : Tails::small;
}

Check does_not_follow(const Values& v, const Argument& proportion, const Argument& held) {
    for (const Argument* effect : {&risk_difference, &risk_ratio, &odds_ratio, &h})
        if (v.has(*effect))
            return Refusal{.argument = std::string(effect->name),
                           .reason = "leaves no " + std::string(proportion.name) +
                                     " between 0 and 1 beside " + std::string(held.name) +
                                     "; one nearer to no effect would do"};
    return {};
}

}  // namespace statplan
