// Words of messages.
#pragma once

#include "statplan/text.h"

namespace statplan {

/// What somebody gave, escaped, in quotes.
std::string quoted(std::string_view given);

}  // namespace statplan
