// Import speed: the synthetic partition's document read back into a fresh partition, next to
// what Xerces-C alone needs to parse the same bytes into a DOM. Run each benchmark in a process
// of its own (--benchmark_filter) for a peak memory that is its own.
#include "SyntheticPartition.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/XMLBuilder/Partition2XML.h"
#include "Vellum/XMLBuilder/XML2Partition.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr unsigned setCount = 100000;

double peakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

/// The synthetic partition's document as UTF-8 bytes. It is made by a child process, so that
/// building and exporting the partition does not count in this process's peak memory.
std::string exportInChildProcess(bool typedReferences) {
    int channel[2];
    if (pipe(channel) != 0) {
        throw std::runtime_error("cannot create a pipe");
    }
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("cannot fork");
    }
    if (child == 0) {
        close(channel[0]);
        auto partition = VellumBench::syntheticPartition(setCount);
        const auto document =
            Vellum::XMLBuilder::partition2XML(partition.get(), typedReferences, false);
        std::string bytes;
        Vellum::XMLUtils::domToBytes(document.get(), bytes, Vellum::XMLUtils::EncodingType::UTF8);
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t written = write(channel[1], bytes.data() + done, bytes.size() - done);
            if (written <= 0) {
                _exit(1);
            }
            done += static_cast<std::size_t>(written);
        }
        _exit(0);
    }
    close(channel[1]);
    std::string bytes;
    char buffer[1 << 16];
    for (ssize_t got = 0; (got = read(channel[0], buffer, sizeof buffer)) > 0;) {
        bytes.append(buffer, static_cast<std::size_t>(got));
    }
    close(channel[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error("the export process failed");
    }
    return bytes;
}

/// The document bytes of one layout, made once.
const std::string& documentBytes(bool typedReferences) {
    static std::string flat;
    static std::string typed;
    std::string& bytes = typedReferences ? typed : flat;
    if (bytes.empty()) {
        bytes = exportInChildProcess(typedReferences);
    }
    return bytes;
}

const std::uint8_t* data(const std::string& bytes) {
    return reinterpret_cast<const std::uint8_t*>(bytes.data());
}

void report(benchmark::State& state, const std::string& bytes) {
    state.counters["sets/s"] =
        benchmark::Counter(setCount, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["MB/s"] = benchmark::Counter(static_cast<double>(bytes.size()) / 1e6,
                                                benchmark::Counter::kIsIterationInvariantRate);
    state.counters["peak MiB"] = peakMiB();
}

// Xerces-C alone: the bytes parsed into a DOM with the import's parser settings.
void parseOnly(benchmark::State& state, bool typedReferences) {
    const std::string& bytes = documentBytes(typedReferences);
    const auto parser = Vellum::XMLUtils::Initializer::instance().createParser();
    for (auto _ : state) {
        const auto document =
            Vellum::XMLUtils::loadDocumentFromBuffer(data(bytes), bytes.size(), *parser);
        benchmark::DoNotOptimize(document.get());
    }
    report(state, bytes);
}

// The whole import into a fresh partition (made and destroyed outside the timing).
void import(benchmark::State& state, bool typedReferences) {
    const std::string& bytes = documentBytes(typedReferences);
    for (auto _ : state) {
        state.PauseTiming();
        auto partition = std::make_unique<Vellum::Metadata::PartitionMetadata>(
            Vellum::MetaMetadata::Dictionary::builtIn());
        state.ResumeTiming();
        const auto sets = Vellum::XML2Partition::getPartitionMetadataFromBuffer(
            data(bytes), static_cast<std::uint32_t>(bytes.size()), partition.get());
        benchmark::DoNotOptimize(sets.size());
        state.PauseTiming();
        partition.reset();
        state.ResumeTiming();
    }
    report(state, bytes);
}

void BM_XercesParseFlat(benchmark::State& state) {
    parseOnly(state, false);
}
void BM_ImportFlat(benchmark::State& state) {
    import(state, false);
}
void BM_XercesParseTypedReferences(benchmark::State& state) {
    parseOnly(state, true);
}
void BM_ImportTypedReferences(benchmark::State& state) {
    import(state, true);
}

BENCHMARK(BM_XercesParseFlat)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ImportFlat)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_XercesParseTypedReferences)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ImportTypedReferences)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
