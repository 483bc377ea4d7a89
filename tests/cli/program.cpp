#include "program.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace testing_support {

Output shell(const std::string& command) {
    FILE* pipe = popen(("exec 2>&1; STATPOWER=" STATPOWER_PROGRAM "; " + command).c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run the program");
    std::string text;
    for (int c; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    return {WEXITSTATUS(pclose(pipe)), text};
}

Output statpower(const std::string& arguments) {
    return shell("$STATPOWER " + arguments);
}

Folder::Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "statpower-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make a folder");
    folder_ = name;
}

Folder::~Folder() {
    std::filesystem::remove_all(folder_);
}

std::string Folder::write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::string Folder::read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(path(name), std::ios::binary).rdbuf();
    return text.str();
}

}  // namespace testing_support
