// What the planner's library exports.
#pragma once

#define STATPLAN_API __attribute__((visibility("default")))
#define STATPLAN_HIDDEN __attribute__((visibility("hidden")))
