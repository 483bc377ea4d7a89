#include "program.h"

#include <sys/wait.h>

#include <cstdio>
#include <stdexcept>

namespace testing_support {

Output statpower(const std::string& arguments) {
    FILE* pipe = popen((STATPOWER_PROGRAM " " + arguments + " 2>&1").c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run the program");
    std::string text;
    for (int c; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    return {WEXITSTATUS(pclose(pipe)), text};
}

}  // namespace testing_support
