// The whole interface of the power library.
#pragma once

#include "statpower/anova.h"
#include "statpower/core.h"
#include "statpower/correlation.h"
#include "statpower/independent_binomial.h"
#include "statpower/means.h"
#include "statpower/one_sample_binomial.h"
#include "statpower/regression.h"
#include "statpower/related_binomial.h"
