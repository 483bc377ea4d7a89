#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstring>
#include <mutex>

#include "cli.h"

namespace cli {

namespace {

std::atomic<bool> line_shown = false, held = false, waits = false, ended = false;

void say(std::string_view text) {
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

extern "C" void interrupted(int) {
    waits = true;
    if (held || ended.exchange(true)) return;
    if (line_shown) say("\r\033[K");
    say("statpower: interrupted\n");
    _exit(kInterrupted);
}

}  // namespace

void keep_standard_files() {
    for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(file, F_GETFD) == -1) ::open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

void end_on_interrupt() {
    // Ignored: a job in the background of a script.
    if (std::signal(SIGINT, interrupted) == SIG_IGN) std::signal(SIGINT, SIG_IGN);
}

Uninterrupted::Uninterrupted() {
    held = true;
}
Uninterrupted::~Uninterrupted() {
    held = false;
    if (waits) interrupted(SIGINT);
}

Progress::Progress(std::function<std::string(double)> line) {
    if (isatty(STDERR_FILENO) != 1) return;
    display_ = std::jthread([line = std::move(line)](const std::stop_token& stop) {
        const auto start = std::chrono::steady_clock::now();
        std::mutex mutex;
        std::unique_lock lock(mutex);
        std::condition_variable_any end;
        const auto wait = [&](auto time) { return end.wait_for(lock, stop, time, [] { return false; }); };
        for (wait(std::chrono::seconds(1)); !stop.stop_requested(); wait(std::chrono::milliseconds(200))) {
            line_shown = true;
            say("\r\033[K" +
                line(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count()));
        }
        if (line_shown.exchange(false)) say("\r\033[K");
    });
}

void write(std::FILE* file, std::string_view text, const std::string& name) {
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    if (!written || std::fflush(file) != 0)
        throw failed("cannot write " + statplan::escaped(name) + ": " + std::strerror(errno));
}

int print(std::string_view text) {
    write(stdout, text, "the answer");
    return kAnswered;
}

File open(const std::string& name, const char* mode) {
    File file(std::fopen(name.c_str(), mode));
    if (!file) throw failed("cannot open " + statplan::escaped(name) + ": " + std::strerror(errno));
    return file;
}

int run_program(std::vector<std::string> command, std::FILE* input, std::FILE* output) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (std::string& argument : command) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (input) posix_spawn_file_actions_adddup2(&actions, fileno(input), STDIN_FILENO);
    if (output) posix_spawn_file_actions_adddup2(&actions, fileno(output), STDOUT_FILENO);
    pid_t child = 0;
    int status = 0;
    const int error = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0 || waitpid(child, &status, 0) != child) return 127;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace cli
