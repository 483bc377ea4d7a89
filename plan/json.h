// Requests as JSON.
#pragma once

#include "statplan/plan.h"

namespace statplan {

/// The question of a JSON object: "test", "question", and each argument by its name.
Outcome<Question> question_from_json(std::string_view text);

/// What a plan finds: "question", "unknown", and the names of its "answers".
std::string answers_json(const Plan& plan);

}  // namespace statplan
