// Export speed: a synthetic partition of many sets to XML, next to what Xerces-C alone needs
// to build and serialise a DOM of the same shape. Run each benchmark in a process of its own
// (--benchmark_filter) for a peak memory figure that is its own.
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

#include <sys/resource.h>

namespace {

constexpr unsigned setCount = 100000;

double peakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void exportPartition(benchmark::State& state, bool typedReferences) {
    auto partition = VellumBench::syntheticPartition(setCount);
    for (auto _ : state) {
        Vellum::WString text;
        Vellum::XMLBuilder::partition2XML(partition.get(), typedReferences, false,
                                          Vellum::XMLUtils::EncodingType::UTF8, text);
        benchmark::DoNotOptimize(text.data());
    }
    state.counters["sets/s"] =
        benchmark::Counter(setCount, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["peak MiB"] = peakMiB();
}

void BM_ExportFlat(benchmark::State& state) {
    exportPartition(state, false);
}
void BM_ExportTypedReferences(benchmark::State& state) {
    exportPartition(state, true);
}

// The same document shape built with Xerces-C calls alone: a root, one element per set with
// an identity attribute, four properties (two compound), and one reference per set.
void BM_XercesDOMOfTheSameShape(benchmark::State& state) {
    Vellum::XMLUtils::Initializer::instance();
    auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    const char16_t* s377m = u"urn:SMPTE:S377M";
    const char16_t* types = u"urn:SMPTE:Types:MXF";
    const char16_t* uuid = u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00";
    for (auto _ : state) {
        Vellum::XMLUtils::DocumentPtr document(
            implementation->createDocument(s377m, u"s377m:MetadataSets", nullptr));
        auto* root = document->getDocumentElement();
        // Declared once on the root, as the export does, so the serialiser need not repeat them.
        const char16_t* xmlns = u"http://www.w3.org/2000/xmlns/";
        root->setAttributeNS(xmlns, u"xmlns:s377m", s377m);
        root->setAttributeNS(xmlns, u"xmlns:types", types);
        root->setAttributeNS(xmlns, u"xmlns:rp210", u"http://www.smpte-ra.org/rp210");
        auto* preface = document->createElementNS(s377m, u"s377m:Preface");
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
            set->setAttributeNS(u"http://www.smpte-ra.org/rp210", u"rp210:InstanceUID", uuid);
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
        Vellum::WString out;
        Vellum::XMLUtils::domToBuffer(document.get(), out, Vellum::XMLUtils::EncodingType::UTF8);
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["sets/s"] =
        benchmark::Counter(setCount, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["peak MiB"] = peakMiB();
}

BENCHMARK(BM_XercesDOMOfTheSameShape)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ExportFlat)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ExportTypedReferences)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
