// Requests as JSON.
#pragma once

#include "statplan/plan.h"

namespace statplan {

/// The question of a JSON object: "test", "question", and each argument by its name.
Outcome<Question> question_from_json(std::string_view text);

}  // namespace statplan
