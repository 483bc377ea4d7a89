// Answers requests, one a line of JSON, as the C interface does: the native side of comparisons with other builds.
#include <cstdio>
#include <iostream>
#include <string>

#include "statplan/ask.h"

int main() {
    for (std::string request; std::getline(std::cin, request);) {
        char* answer = statplan_ask(request.c_str(), nullptr, nullptr);
        std::puts(answer);
        statplan_free(answer);
    }
}
