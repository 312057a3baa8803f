// Whole-process cost of the command-line program: `vellum to-xml` of the bundled sample next to
// `vellum version` (start-up alone), `vellum info` and /bin/true (what starting any process
// costs on this machine). Each iteration spawns the program and times it until it exits; the
// medians of the repetitions are the figures to quote.
#include <benchmark/benchmark.h>

#include <chrono>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace {

// Runs `arguments` (the program first) with its output sent to /dev/null; returns the wall
// time in seconds. Throws when it cannot start or does not exit with status 0.
double runOnce(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    const int spawned = posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (spawned != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        throw std::runtime_error("'" + arguments.front() + " " + arguments.at(1) + "' failed");
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void wholeProcess(benchmark::State& state, const std::vector<std::string>& arguments) {
    for (auto _ : state) {
        state.SetIterationTime(runOnce(arguments));
    }
}

const std::string program = VELLUM_PROGRAM;
const std::string sample = VELLUM_SAMPLE;

void BM_EmptyProcess(benchmark::State& state) {
    wholeProcess(state, {"/bin/true", "x"});
}
void BM_Version(benchmark::State& state) {
    wholeProcess(state, {program, "version"});
}
void BM_InfoOfSample(benchmark::State& state) {
    wholeProcess(state, {program, "info", sample});
}
void BM_ToXmlOfSample(benchmark::State& state) {
    wholeProcess(state, {program, "to-xml", sample, "-o", "/dev/null"});
}
void BM_ToXmlTypedOfSample(benchmark::State& state) {
    wholeProcess(state, {program, "to-xml", "--typed-references", sample, "-o", "/dev/null"});
}

// 20 repetitions of 10 runs: the median aggregate is robust against the odd slow start.
#define VELLUM_STARTUP_BENCHMARK(name)                                                             \
    BENCHMARK(name)                                                                                \
        ->UseManualTime()                                                                          \
        ->Unit(benchmark::kMillisecond)                                                            \
        ->Iterations(10)                                                                           \
        ->Repetitions(20)                                                                          \
        ->ReportAggregatesOnly(true)

VELLUM_STARTUP_BENCHMARK(BM_EmptyProcess);
VELLUM_STARTUP_BENCHMARK(BM_Version);
VELLUM_STARTUP_BENCHMARK(BM_InfoOfSample);
VELLUM_STARTUP_BENCHMARK(BM_ToXmlOfSample);
VELLUM_STARTUP_BENCHMARK(BM_ToXmlTypedOfSample);

} // namespace
