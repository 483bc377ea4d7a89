// Asks the planner questions of the catalogue's words and of any bytes, and watches the answers.
//
//   fuzz_plans [--seconds S | --count N] [--seed N] [--findings FILE]    random requests, the slowest ten at the end
//   fuzz_plans --inputs FOLDER [--count N] [--seed N]                    writes requests as inputs of fuzz_text
//   fuzz_plans --replay FILE...                                          requests that were recorded, one a line
//
// Exit status 0 when nothing was found, 1 when something was; a crash names its request.
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iostream>

#include "fuzz/plans.h"

namespace {

std::string current;

void report_crash(int signal) {
    const auto say = [](const std::string& text) {
        [[maybe_unused]] const auto written = write(STDERR_FILENO, text.data(), text.size());
    };
    say(signal == SIGALRM ? "\nFOUND: never answers: " : "\nFOUND: crashes: ");
    say(current + "\n");
    _exit(1);
}

fuzz::Reply watched(const fuzz::Request& request, const std::string& findings) {
    current = written(request);
    alarm(120);
    fuzz::Reply reply = answer(request);
    for (const std::string& fault : reply.faults)
        std::cerr << "FOUND: " << fault << ": " << current << std::endl;
    if (!reply.faults.empty() && !findings.empty()) std::ofstream(findings, std::ios::app) << current << '\n';
    return reply;
}

int replay(const std::vector<std::string>& files) {
    int requests = 0, found = 0;
    for (const std::string& file : files) {
        std::ifstream in(file);
        for (std::string line; std::getline(in, line);) {
            if (line.empty() || line[0] == '#') continue;
            ++requests;
            found += watched(fuzz::read_request(line), {}).faults.empty() ? 0 : 1;
        }
    }
    std::cout << requests << " recorded requests, " << found << " with faults\n";
    return found > 0 || requests == 0;
}

/// Ordinary and hostile requests, from which a fuzzer that looks for new branches starts.
int write_inputs(const std::string& folder, long count, fuzz::Choices& choices) {
    for (long i = 0; i < count; ++i) {
        const fuzz::Request request = draw_request(choices);
        std::ofstream(folder + "/drawn-" + std::to_string(i), std::ios::binary)
            << static_cast<char>(request.door) << request.text;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) try {
    double seconds = 10;
    long most = -1;
    std::uint64_t seed = 1;
    std::string findings, inputs;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--replay") return replay({argv + i + 1, argv + argc});
        if (++i == argc) throw std::runtime_error(word + " needs a value");
        if (word == "--seconds")
            seconds = std::stod(argv[i]);
        else if (word == "--count")
            most = std::stol(argv[i]);
        else if (word == "--seed")
            seed = std::stoull(argv[i]);
        else if (word == "--findings")
            findings = argv[i];
        else if (word == "--inputs")
            inputs = argv[i];
        else
            throw std::runtime_error("unknown option " + word);
    }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) ::signal(signal, report_crash);
#endif
    ::signal(SIGALRM, report_crash);

    fuzz::RandomChoices choices(seed);
    if (!inputs.empty()) return write_inputs(inputs, most, choices);
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    std::vector<std::pair<double, std::string>> slowest;
    long requests = 0, answered = 0, found = 0;
    while (most < 0 ? Clock::now() < end : requests < most) {
        const fuzz::Reply reply = watched(draw_request(choices), findings);
        ++requests;
        answered += reply.answered ? 1 : 0;
        found += reply.faults.empty() ? 0 : 1;
        slowest.emplace_back(reply.milliseconds, current);
        std::ranges::push_heap(slowest, std::greater<>());
        if (slowest.size() > 10) {
            std::ranges::pop_heap(slowest, std::greater<>());
            slowest.pop_back();
        }
    }
    std::ranges::sort(slowest, std::greater<>());
    std::cout << requests << " requests of the planner, " << answered << " answered, " << found
              << " with faults; the slowest:\n";
    for (const auto& [milliseconds, text] : slowest)
        std::cout << "  " << milliseconds << " ms  " << text.substr(0, 400) << '\n';
    return found > 0 || answered == 0;
} catch (const std::exception& error) {
    std::cerr << "fuzz_plans: " << error.what() << '\n';
    return 2;
}
