// What the power library exports.
#pragma once

#define STATPOWER_API __attribute__((visibility("default")))
