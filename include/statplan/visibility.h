// What the planner's library exports.
#pragma once

#define STATPLAN_API __attribute__((visibility("default")))
