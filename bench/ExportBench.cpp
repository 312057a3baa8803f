// Export speed and memory: a synthetic partition of N sets (a Preface and N - 1
// Identification sets) written as XML text by the streaming export in both layouts, by the DOM
// export serialised with Xerces-C, and, for scale, by Xerces-C alone building and serialising
// a DOM of the same shape. The text goes to a stream that only counts it, as a file would take
// it. "peak MiB" is the process's peak resident memory, the partition included, so run each
// benchmark in a process of its own, one size at a time:
//
//   vellum_export_bench --benchmark_filter='^BM_StreamFlat/100000$'
//
// or all of them: for b in $(vellum_export_bench --benchmark_list_tests); do
//                      vellum_export_bench --benchmark_filter="^$b\$"; done
#include "SyntheticPartition.h"

#include "Vellum/XMLBuilder/Partition2XML.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"

#include <benchmark/benchmark.h>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/dom/DOMText.hpp>

#include <cstdint>
#include <ostream>
#include <streambuf>
#include <string>
#include <sys/resource.h>

namespace {

using Vellum::XMLUtils::EncodingType;

double peakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

/// A stream buffer that counts what it is given and keeps none of it.
class CountingBuffer : public std::streambuf {
public:
    std::uint64_t count = 0;

protected:
    int_type overflow(int_type c) override {
        ++count;
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char_type* /*text*/, std::streamsize size) override {
        count += static_cast<std::uint64_t>(size);
        return size;
    }
};

void report(benchmark::State& state, std::uint64_t bytes) {
    state.counters["sets/s"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsRate | benchmark::Counter::kIsIterationInvariant);
    state.counters["MiB out"] = static_cast<double>(bytes) / (1024.0 * 1024.0);
    state.counters["peak MiB"] = peakMiB();
}

void streamPartition(benchmark::State& state, bool typedReferences) {
    const auto partition = VellumBench::syntheticPartition(static_cast<unsigned>(state.range(0)));
    std::uint64_t bytes = 0;
    for (auto _ : state) {
        CountingBuffer buffer;
        std::ostream out(&buffer);
        Vellum::XMLBuilder::partition2XML(partition.get(), typedReferences, false,
                                          EncodingType::UTF8, out);
        bytes = buffer.count;
    }
    report(state, bytes);
}

void BM_StreamFlat(benchmark::State& state) {
    streamPartition(state, false);
}
void BM_StreamTyped(benchmark::State& state) {
    streamPartition(state, true);
}

// The document built as a DOM, then serialised: what the text cost before the export streamed.
void BM_DOMExport(benchmark::State& state) {
    const auto partition = VellumBench::syntheticPartition(static_cast<unsigned>(state.range(0)));
    std::uint64_t bytes = 0;
    for (auto _ : state) {
        const auto document = Vellum::XMLBuilder::partition2XML(partition.get(), false, false);
        std::string text;
        Vellum::XMLUtils::domToBytes(document.get(), text, EncodingType::UTF8);
        bytes = text.size();
    }
    report(state, bytes);
}

// The same document shape built with Xerces-C calls alone: a root, one element per set with
// an identity attribute, four properties (two compound), and one reference per set.
void BM_XercesDOMOfTheSameShape(benchmark::State& state) {
    const auto setCount = static_cast<unsigned>(state.range(0));
    Vellum::XMLUtils::Initializer::instance();
    auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    const char16_t* s377m = u"urn:SMPTE:S377M";
    const char16_t* types = u"urn:SMPTE:Types:MXF";
    const char16_t* rp210 = u"http://www.smpte-ra.org/rp210";
    const char16_t* uuid = u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00";
    std::uint64_t bytes = 0;
    for (auto _ : state) {
        Vellum::XMLUtils::DocumentPtr document(
            implementation->createDocument(s377m, u"s377m:MetadataSets", nullptr));
        auto* root = document->getDocumentElement();
        // Declared once on the root, as the export does, so the serialiser need not repeat them.
        const char16_t* xmlns = u"http://www.w3.org/2000/xmlns/";
        root->setAttributeNS(xmlns, u"xmlns:s377m", s377m);
        root->setAttributeNS(xmlns, u"xmlns:types", types);
        root->setAttributeNS(xmlns, u"xmlns:rp210", rp210);
        auto* preface = document->createElementNS(s377m, u"s377m:Preface");
        preface->setAttributeNS(rp210, u"rp210:InstanceUID", uuid);
        root->appendChild(preface);
        auto* list = document->createElementNS(s377m, u"s377m:Identifications");
        preface->appendChild(list);
        auto text = [&](xercesc::DOMElement* parent, const char16_t* ns, const char16_t* name,
                        const char16_t* value) {
            auto* child = document->createElementNS(ns, name);
            child->appendChild(document->createTextNode(value));
            parent->appendChild(child);
        };
        for (unsigned i = 1; i < setCount; ++i) {
            auto* ref = document->createElementNS(s377m, u"s377m:Identification_REF");
            ref->setAttributeNS(types, u"types:TargetInstance", uuid);
            list->appendChild(ref);
            auto* set = document->createElementNS(s377m, u"s377m:Identification");
            set->setAttributeNS(rp210, u"rp210:InstanceUID", uuid);
            root->appendChild(set);
            text(set, s377m, u"s377m:CompanyName", u"Vellum Benchmarks");
            text(set, s377m, u"s377m:ProductName", u"Product 12345");
            auto* version = document->createElementNS(s377m, u"s377m:ProductVersion");
            set->appendChild(version);
            for (const char16_t* part : {u"types:Major", u"types:Minor", u"types:Patch",
                                         u"types:Build", u"types:Release"}) {
                text(version, types, part, u"1");
            }
            auto* date = document->createElementNS(s377m, u"s377m:ModificationDate");
            set->appendChild(date);
            for (const char16_t* part : {u"types:Year", u"types:Month", u"types:Day", u"types:Hour",
                                         u"types:Minute", u"types:Second", u"types:mSec4"}) {
                text(date, types, part, u"21");
            }
        }
        std::string out;
        Vellum::XMLUtils::domToBytes(document.get(), out, EncodingType::UTF8);
        bytes = out.size();
    }
    report(state, bytes);
}

// A DOM of a million sets takes more than ten gigabytes; the DOM benchmarks stop before.
BENCHMARK(BM_StreamFlat)
    ->Unit(benchmark::kMillisecond)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000);
BENCHMARK(BM_StreamTyped)
    ->Unit(benchmark::kMillisecond)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000);
BENCHMARK(BM_DOMExport)->Unit(benchmark::kMillisecond)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_XercesDOMOfTheSameShape)
    ->Unit(benchmark::kMillisecond)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000);

} // namespace
