// Import speed and memory: the synthetic partition's document (1k to 1M sets, both layouts)
// read back into a fresh partition, from its bytes in memory (BM_Import) or from its file
// (BM_ImportFile), next to what Xerces-C alone needs to parse the same bytes into a DOM
// (BM_XercesDOMParse). Run each benchmark in a process of its own, for a peak memory that is
// its own:
//
//     vellum_import_bench --benchmark_filter='^BM_Import/flat/100000/'
//
// The documents are exported once by a child process (so that building and exporting the
// partition does not count here) and kept in $VELLUM_BENCH_CACHE (default
// /tmp/vellum-import-bench); delete them after the export changes.
#include "SyntheticPartition.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/Partition2XMLText.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <benchmark/benchmark.h>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double peakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

/// The CPU time of the whole process (every thread) so far, in seconds: the benchmark's own
/// CPU time counts only the thread that runs it, and the import parses a large document on a
/// second thread.
double processCPUSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

std::filesystem::path cacheDirectory() {
    const char* given = std::getenv("VELLUM_BENCH_CACHE");
    return given != nullptr ? std::filesystem::path(given)
                            : std::filesystem::temp_directory_path() / "vellum-import-bench";
}

/// Exports the synthetic partition of `setCount` sets to `path` (UTF-8) in a child process.
void exportInChildProcess(unsigned setCount, bool typedReferences,
                          const std::filesystem::path& path) {
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("cannot fork");
    }
    if (child == 0) {
        const auto partition = VellumBench::syntheticPartition(setCount);
        const std::filesystem::path part = path.string() + ".part";
        {
            std::ofstream file(part, std::ios::binary);
            Vellum::XMLBuilder::partition2XML(partition.get(), typedReferences, false,
                                              Vellum::XMLUtils::EncodingType::UTF8, file);
        }
        std::filesystem::rename(part, path);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error("the export process failed");
    }
}

/// The file of the document of `setCount` sets in one layout, exported on first use.
std::filesystem::path documentFile(unsigned setCount, bool typedReferences) {
    const std::filesystem::path directory = cacheDirectory();
    std::filesystem::create_directories(directory);
    const std::filesystem::path path =
        directory / ((typedReferences ? "typed-" : "flat-") + std::to_string(setCount) + ".xml");
    if (!std::filesystem::exists(path)) {
        exportInChildProcess(setCount, typedReferences, path);
    }
    return path;
}

std::string documentBytes(unsigned setCount, bool typedReferences) {
    std::ifstream file(documentFile(setCount, typedReferences), std::ios::binary);
    file.seekg(0, std::ios::end);
    std::string bytes(static_cast<std::size_t>(file.tellg()), '\0');
    file.seekg(0);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

const std::uint8_t* data(const std::string& bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.data());
}

void report(benchmark::State& state, unsigned setCount, std::size_t bytes, double cpuSeconds) {
    state.counters["sets/s"] =
        benchmark::Counter(setCount, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["MB/s"] = benchmark::Counter(static_cast<double>(bytes) / 1e6,
                                                benchmark::Counter::kIsIterationInvariantRate);
    state.counters["doc MB"] = static_cast<double>(bytes) / 1e6;
    state.counters["process CPU ms"] =
        benchmark::Counter(1e3 * cpuSeconds, benchmark::Counter::kAvgIterations);
    state.counters["peak MiB"] = peakMiB();
}

/// Times the import into a fresh partition (made and destroyed outside the timing) by
/// `read`, which returns the sets made; returns the process CPU time it took.
template <class Read>
double timeImport(benchmark::State& state, unsigned setCount, const Read& read) {
    double cpuSeconds = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto partition = std::make_unique<Vellum::Metadata::PartitionMetadata>(
            Vellum::MetaMetadata::Dictionary::builtIn());
        const double cpuBefore = processCPUSeconds();
        state.ResumeTiming();
        const std::size_t sets = read(*partition);
        state.PauseTiming();
        cpuSeconds += processCPUSeconds() - cpuBefore;
        if (partition->sets().size() != setCount) {
            state.SkipWithError("the import made another number of sets");
        }
        benchmark::DoNotOptimize(sets);
        partition.reset();
        state.ResumeTiming();
    }
    return cpuSeconds;
}

// From the document's bytes in memory (which count in the peak).
void BM_Import(benchmark::State& state, bool typedReferences) {
    const auto setCount = static_cast<unsigned>(state.range(0));
    const std::string bytes = documentBytes(setCount, typedReferences);
    const double cpu =
        timeImport(state, setCount, [&bytes](Vellum::Metadata::PartitionMetadata& partition) {
            return Vellum::XML2Partition::getPartitionMetadataFromBuffer(
                       data(bytes), static_cast<std::uint32_t>(bytes.size()), &partition)
                .size();
        });
    report(state, setCount, bytes.size(), cpu);
}

// From the document's file.
void BM_ImportFile(benchmark::State& state, bool typedReferences) {
    const auto setCount = static_cast<unsigned>(state.range(0));
    const std::filesystem::path path = documentFile(setCount, typedReferences);
    const Vellum::WString widePath = Vellum::Utils::stringToWstring(path.string());
    const double cpu =
        timeImport(state, setCount, [&widePath](Vellum::Metadata::PartitionMetadata& partition) {
            return Vellum::XML2Partition::getPartitionMetadataFromFile(widePath.c_str(), &partition)
                .size();
        });
    report(state, setCount, static_cast<std::size_t>(std::filesystem::file_size(path)), cpu);
}

// Xerces-C alone: the bytes parsed into a DOM (namespaces on, nothing validated or loaded).
void BM_XercesDOMParse(benchmark::State& state, bool typedReferences) {
    const auto setCount = static_cast<unsigned>(state.range(0));
    const std::string bytes = documentBytes(setCount, typedReferences);
    double cpuSeconds = 0;
    xercesc::XMLPlatformUtils::Initialize();
    {
        xercesc::XercesDOMParser parser;
        parser.setDoNamespaces(true);
        parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
        parser.setLoadExternalDTD(false);
        for (auto _ : state) {
            const double cpuBefore = processCPUSeconds();
            const xercesc::MemBufInputSource source(data(bytes), bytes.size(), "bench", false);
            parser.parse(source);
            benchmark::DoNotOptimize(parser.getDocument());
            state.PauseTiming();
            cpuSeconds += processCPUSeconds() - cpuBefore;
            parser.resetDocumentPool();
            state.ResumeTiming();
        }
    }
    xercesc::XMLPlatformUtils::Terminate();
    report(state, setCount, bytes.size(), cpuSeconds);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
    benchmark->Unit(benchmark::kMillisecond)->Iterations(3);
}

BENCHMARK_CAPTURE(BM_Import, flat, false)->Apply(sizes);
BENCHMARK_CAPTURE(BM_Import, typed, true)->Apply(sizes);
BENCHMARK_CAPTURE(BM_ImportFile, flat, false)->Apply(sizes);
BENCHMARK_CAPTURE(BM_ImportFile, typed, true)->Apply(sizes);
BENCHMARK_CAPTURE(BM_XercesDOMParse, flat, false)->Apply(sizes);
BENCHMARK_CAPTURE(BM_XercesDOMParse, typed, true)->Apply(sizes);

} // namespace
