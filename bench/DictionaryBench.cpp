// Cost of building the meta-dictionary: the first Dictionary::builtIn() of a fresh process
// (what every program pays at start-up), later calls in a warm process, making every element
// definition, and a large user file loaded on top of the built-in definitions.
//
// The fresh-process figure comes from running this program again with "--first-built-in" for
// every iteration: the child times its one call and prints the microseconds, which become the
// iteration's time (manual timing), so process start-up itself is not counted.
#include "Vellum/MetaMetadata/Dictionary.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

using Vellum::MetaMetadata::Dictionary;

constexpr const char* firstBuiltInOption = "--first-built-in";

double threadCpuMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

// The child: one builtIn() call, timed, as "<wall us> <cpu us> <sets>".
int timeFirstBuiltIn() {
    const double cpuBefore = threadCpuMicroseconds();
    const auto before = std::chrono::steady_clock::now();
    const auto dictionary = Dictionary::builtIn();
    const auto after = std::chrono::steady_clock::now();
    const double cpu = threadCpuMicroseconds() - cpuBefore;
    const double wall = std::chrono::duration<double, std::micro>(after - before).count();
    std::printf("%.3f %.3f %zu\n", wall, cpu, dictionary->setDefinitionCount());
    return 0;
}

struct ChildResult {
    double wallMicroseconds = 0;
    double cpuMicroseconds = 0;
};

// Runs this program with "--first-built-in" and reads what it prints.
ChildResult runChild() {
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0) {
        throw std::runtime_error("pipe failed");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
    char self[] = "/proc/self/exe";
    char option[32];
    std::strncpy(option, firstBuiltInOption, sizeof option - 1);
    option[sizeof option - 1] = '\0';
    char* arguments[] = {self, option, nullptr};
    pid_t child = 0;
    const int spawned = posix_spawn(&child, self, &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeEnds[1]);
    std::string output;
    char buffer[256];
    ssize_t count = 0;
    while ((count = read(pipeEnds[0], buffer, sizeof buffer)) > 0) {
        output.append(buffer, static_cast<std::size_t>(count));
    }
    close(pipeEnds[0]);
    int status = 0;
    if (spawned != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        throw std::runtime_error("the --first-built-in child failed");
    }
    ChildResult result;
    if (std::sscanf(output.c_str(), "%lf %lf", &result.wallMicroseconds, &result.cpuMicroseconds) !=
        2) {
        throw std::runtime_error("unexpected child output: " + output);
    }
    return result;
}

std::string hexByte(unsigned value) {
    char text[3];
    std::snprintf(text, sizeof text, "%02X", value & 0xFFU);
    return text;
}

// `sets` private sets in chains of four below GenericPictureEssenceDescriptor, each with
// `elementsPerSet` elements: (1 + elementsPerSet) x sets definitions.
std::string syntheticDictionary(unsigned sets, unsigned elementsPerSet) {
    std::string text = "format\tvellum-dictionary\t1\n"
                       "columns\tset\tkey\tname\tparent\tabstract\tstructural\txml-prefix\t"
                       "xml-namespace\n"
                       "columns\telement\tset\tul\tname\ttype\tcollection\trequired\torder\n";
    for (unsigned s = 0; s < sets; ++s) {
        const std::string name = "BenchSet" + std::to_string(s);
        const std::string parent = s % 4 == 0 ? std::string("GenericPictureEssenceDescriptor")
                                              : "BenchSet" + std::to_string(s - 1);
        text += "set\t06.0E.2B.34.02.53.01.01.0E.7F." + hexByte(s >> 8U) + "." + hexByte(s) +
                ".01.01.00.00\t" + name + "\t" + parent + "\tno\tyes\tbench\turn:bench\n";
        for (unsigned e = 0; e < elementsPerSet; ++e) {
            text += "element\t" + name + "\t06.0E.2B.34.01.01.01.01.0E.7F." + hexByte(s >> 8U) +
                    "." + hexByte(s) + "." + hexByte(e) + ".00.00.00\tBench" + std::to_string(s) +
                    "x" + std::to_string(e) + "\tUInt32\t" + (e % 3 == 0 ? "batch" : "none") +
                    "\toptional\t" + std::to_string(e + 1) + "\n";
        }
    }
    return text;
}

void firstBuiltInInFreshProcess(benchmark::State& state) {
    double cpu = 0;
    for (auto _ : state) {
        const ChildResult result = runChild();
        state.SetIterationTime(result.wallMicroseconds / 1e6);
        cpu += result.cpuMicroseconds;
    }
    state.counters["cpu_ms"] = benchmark::Counter(cpu / 1e3, benchmark::Counter::kAvgIterations);
}
BENCHMARK(firstBuiltInInFreshProcess)->UseManualTime()->Unit(benchmark::kMillisecond);

void builtInWarm(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(Dictionary::builtIn());
    }
}
BENCHMARK(builtInWarm)->Unit(benchmark::kMillisecond);

// Every set's elements and the label index made, as a program that lists them all does.
void builtInEveryElement(benchmark::State& state) {
    for (auto _ : state) {
        const auto dictionary = Dictionary::builtIn();
        benchmark::DoNotOptimize(dictionary->metaElementBegin());
    }
}
BENCHMARK(builtInEveryElement)->Unit(benchmark::kMillisecond);

void userFileOnTop(benchmark::State& state) {
    const std::string text = syntheticDictionary(500, 7);
    for (auto _ : state) {
        state.PauseTiming();
        const auto dictionary = Dictionary::builtIn();
        state.ResumeTiming();
        dictionary->loadText(text, "bench.txt");
        benchmark::DoNotOptimize(dictionary->setDefinitionCount());
    }
    state.counters["definitions"] = 500 * 8;
}
BENCHMARK(userFileOnTop)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], firstBuiltInOption) == 0) {
        return timeFirstBuiltIn();
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
