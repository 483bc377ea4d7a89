// The whole interface of the power library.
#pragma once

#include "statpower/anova.h"
#include "statpower/core.h"
#include "statpower/independent_binomial.h"
