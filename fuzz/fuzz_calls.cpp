// Calls every exported function with ordinary, boundary and hostile arguments and watches what happens.
//
//   fuzz_calls [--seconds S] [--seed N] [--only NAME] [--findings FILE]    random calls, the slowest ten at the end
//   fuzz_calls --replay FILE...                                            calls that were recorded, one a line
//   fuzz_calls --soak SECONDS [--threads N]                                the same calls from many threads
//
// Exit status 0 when nothing was found, 1 when something was; a crash names its call.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iostream>
#include <random>
#include <thread>

#include "fuzz/calls.h"

namespace {

using Clock = std::chrono::steady_clock;

void say(const char* text) {
    [[maybe_unused]] const auto written = write(STDERR_FILENO, text, std::strlen(text));
}

void report_crash(int signal) {
    say(signal == SIGALRM ? "\nFOUND: never answers: " : "\nFOUND: crashes: ");
    say(fuzz::current_call());
    say("\n");
    _exit(1);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
constexpr bool kCatchesCrashes = true;
#else
constexpr bool kCatchesCrashes = false;  // the sanitizer's own report is better
#endif

struct Options {
    double seconds = 10;
    std::uint64_t seed = 1;
    std::string only;
    std::string findings;
    double soak = 0;
    int threads = 8;
    std::vector<std::string> replay;
};

Options parse(int count, char** words) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        const auto value = [&]() -> std::string {
            if (++i >= count) throw std::runtime_error(word + " needs a value");
            return words[i];
        };
        if (word == "--seconds")
            options.seconds = std::stod(value());
        else if (word == "--seed")
            options.seed = std::stoull(value());
        else if (word == "--only")
            options.only = value();
        else if (word == "--findings")
            options.findings = value();
        else if (word == "--soak")
            options.soak = std::stod(value());
        else if (word == "--threads")
            options.threads = std::stoi(value());
        else if (word == "--replay")
            while (++i < count) options.replay.push_back(words[i]);
        else
            throw std::runtime_error("unknown option " + word);
    }
    return options;
}

void report(const fuzz::Observation& seen, const std::string& findings) {
    for (const std::string& fault : seen.faults)
        std::cerr << "FOUND: " << fault << ": " << seen.call << std::endl;
    if (!findings.empty()) std::ofstream(findings, std::ios::app) << seen.call << '\n';
}

int replay(const std::vector<std::string>& files) {
    int calls = 0, found = 0;
    for (const std::string& file : files) {
        std::ifstream in(file);
        for (std::string line; std::getline(in, line);) {
            if (line.empty() || line[0] == '#') continue;
            alarm(120);
            const fuzz::Observation seen = fuzz::call_again(line);
            ++calls;
            if (!seen.faults.empty()) ++found;
            report(seen, {});
        }
    }
    std::cout << calls << " recorded calls, " << found << " with faults\n";
    return found > 0 || calls == 0;
}

/// The functions asked for: all but the planted ones, unless one is named.
std::vector<std::size_t> functions_of(const Options& options) {
    std::vector<std::size_t> functions;
    const auto& names = fuzz::function_names();
    for (std::size_t i = 0; i < names.size(); ++i)
        if (options.only.empty() ? names[i].find("Planted") == std::string::npos : names[i] == options.only)
            functions.push_back(i);
    if (functions.empty()) throw std::runtime_error("no function " + options.only);
    return functions;
}

int fuzz_randomly(const Options& options) {
    const std::vector<std::size_t> functions = functions_of(options);
    fuzz::RandomChoices choices(options.seed);
    std::vector<std::pair<double, std::string>> slowest;
    long calls = 0, found = 0, refused = 0;
    std::size_t peak = 0;
    const auto end = Clock::now() + std::chrono::duration<double>(options.seconds);
    while (Clock::now() < end) {
        // The function of a round in turn, so that every one is called as often as any other.
        const std::size_t index = functions[static_cast<std::size_t>(calls) % functions.size()];
        alarm(300);
        const auto manner = choices.one_in(2) ? fuzz::Manner::kOrdinary : fuzz::Manner::kMixed;
        const fuzz::Observation seen = fuzz::call(index, manner, choices);
        ++calls;
        if (!seen.faults.empty()) {
            ++found;
            report(seen, options.findings);
        }
        refused += seen.refused_memory ? 1 : 0;
        peak = std::max(peak, seen.peak_bytes);
        slowest.emplace_back(seen.milliseconds, seen.call);
        if (slowest.size() > 2000) {
            std::nth_element(slowest.begin(), slowest.begin() + 10, slowest.end(), std::greater<>());
            slowest.resize(10);
        }
    }
    std::sort(slowest.begin(), slowest.end(), std::greater<>());
    slowest.resize(std::min<std::size_t>(slowest.size(), 10));
    std::cout << calls << " calls of " << functions.size() << " functions, " << found << " with faults, "
              << refused << " refused for their memory, at most " << peak / 1000000
              << " MB at once; the slowest:\n";
    for (const auto& [milliseconds, text] : slowest)
        std::cout << "  " << milliseconds << " ms  " << text << '\n';
    return found > 0;
}

long resident_kilobytes() {
    std::ifstream in("/proc/self/statm");
    long total = 0, resident = 0;
    in >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

/// The same calls, each known by its seed: first from one thread, then from many at once, in other orders.
int soak(const Options& options) {
    const std::vector<std::size_t> functions = functions_of(options);
    const auto observe = [&](std::uint64_t seed) {
        fuzz::RandomChoices choices(seed * 7919 + 17);
        return fuzz::call(functions[seed % functions.size()], fuzz::Manner::kOrdinary, choices);
    };
    constexpr std::uint64_t kCalls = 4096;
    std::vector<std::uint64_t> answers(kCalls);
    std::vector<char> is_repeatable(kCalls);
    for (std::uint64_t seed = 0; seed < kCalls; ++seed) {
        const auto seen = observe(seed);
        answers[seed] = seen.answer;
        is_repeatable[seed] = !seen.cancellable;
    }
    std::atomic<long> calls = 0, different = 0;
    const auto end = Clock::now() + std::chrono::duration<double>(options.soak);
    std::vector<std::thread> threads;
    for (int t = 0; t < options.threads; ++t)
        threads.emplace_back([&, t] {
            std::mt19937_64 random(static_cast<std::uint64_t>(t));
            while (Clock::now() < end) {
                const std::uint64_t seed = random() % kCalls;
                if (!is_repeatable[seed]) continue;
                const auto seen = observe(seed);
                ++calls;
                if (seen.answer != answers[seed] && ++different < 10)
                    std::cerr << "FOUND: another answer: " << seen.call << std::endl;
            }
        });
    // Memory is compared from a tenth of the time on, when every thread has its arena.
    std::this_thread::sleep_for(std::chrono::duration<double>(options.soak / 10));
    const long before = resident_kilobytes();
    for (std::thread& thread : threads) thread.join();
    const long after = resident_kilobytes();
    std::cout << calls << " calls from " << options.threads << " threads, " << different
              << " answers that differ from a single "
              << "thread's; " << before << " KB resident at first, " << after << " KB at the end\n";
    const bool grows = after > before + 20000;
    if (grows) std::cerr << "FOUND: memory grows\n";
    return different > 0 || grows || calls == 0;
}

}  // namespace

int main(int count, char** words) try {
    const Options options = parse(count, words);
    if (kCatchesCrashes)
        for (int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) ::signal(signal, report_crash);
    ::signal(SIGALRM, report_crash);
    if (!options.replay.empty()) return replay(options.replay);
    return options.soak > 0 ? soak(options) : fuzz_randomly(options);
} catch (const std::exception& error) {
    std::cerr << "fuzz_calls: " << error.what() << '\n';
    return 2;
}
