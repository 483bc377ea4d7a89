// What the common library exports.
#pragma once

#define ORVCOMMON_API __attribute__((visibility("default")))
