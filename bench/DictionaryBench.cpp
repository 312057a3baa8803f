// Cost of building the meta-dictionary: the compiled-in definitions, and a large user file
// loaded on top of them.
#include "Vellum/MetaMetadata/Dictionary.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

using Vellum::MetaMetadata::Dictionary;

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

void builtIn(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(Dictionary::builtIn());
    }
}
BENCHMARK(builtIn)->Unit(benchmark::kMillisecond);

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
