// Growth of the time per run with the size of hostile input shapes: each shape is read at n
// and at 10n, through the XML import (getPartitionMetadataFromBuffer into a fresh partition)
// or the MXF header metadata reader. Linear work gives a ratio near 10; a ratio well above
// means work that grows faster than the input. After the usual benchmark output the program
// prints the table "shape, n, t(n), t(10n), ratio" (CPU time per run in milliseconds, which
// other work on the machine disturbs less than the wall clock).
#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Vellum;
using Bytes = std::vector<std::uint8_t>;

const std::string header =
    R"(<?xml version="1.0" encoding="UTF-8"?>)"
    R"(<s377m:MetadataSets xmlns:s377m="urn:SMPTE:S377M" )"
    R"(xmlns:rp210="http://www.smpte-ra.org/rp210" )"
    R"(xmlns:types="urn:SMPTE:Types:MXF" xmlns:groups="urn:SMPTE:Groups:MXF")";
const std::string footer = "</s377m:MetadataSets>";

/// The text of the 16-byte identifier whose last four bytes are `n`.
std::string uuidText(std::uint32_t n, std::uint8_t first = 0xA0) {
    char text[48];
    std::snprintf(text, sizeof text, "%02X.01.02.03.04.05.06.07.08.09.0A.0B.%02X.%02X.%02X.%02X",
                  unsigned{first}, (n >> 24) & 0xFFu, (n >> 16) & 0xFFu, (n >> 8) & 0xFFu,
                  n & 0xFFu);
    return text;
}

Bytes bytesOf(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

std::string preface(const std::string& attributes, const std::string& content) {
    return R"(<s377m:Preface rp210:InstanceUID=")" + uuidText(0) + "\"" + attributes + ">" +
           content + "</s377m:Preface>";
}

Bytes manyAttributes(std::size_t n) {
    std::string attributes;
    for (std::size_t i = 0; i < n; ++i) {
        attributes += " a" + std::to_string(i) + "=\"" + std::to_string(i) + "\"";
    }
    return bytesOf(header + ">" + preface(attributes, "") + footer);
}

Bytes manyNamespaces(std::size_t n) {
    std::string declarations;
    for (std::size_t i = 0; i < n; ++i) {
        declarations +=
            " xmlns:p" + std::to_string(i) + "=\"urn:vellum:p" + std::to_string(i) + "\"";
    }
    return bytesOf(header + declarations + ">" + preface("", "<s377m:Version>259</s377m:Version>") +
                   footer);
}

Bytes manySiblingSets(std::size_t n) {
    std::string sets;
    for (std::size_t i = 0; i < n; ++i) {
        sets += R"(<s377m:Identification rp210:InstanceUID=")" +
                uuidText(static_cast<std::uint32_t>(i + 1)) +
                R"("><s377m:CompanyName>Vellum</s377m:CompanyName></s377m:Identification>)";
    }
    return bytesOf(header + ">" + sets + footer);
}

Bytes longReferenceCollection(std::size_t n) {
    std::string items;
    for (std::size_t i = 0; i < n; ++i) {
        items += R"(<s377m:Identification_REF types:TargetInstance=")" +
                 uuidText(static_cast<std::uint32_t>(i + 1)) + R"("/>)";
    }
    return bytesOf(header + ">" +
                   preface("", "<s377m:Identifications>" + items + "</s377m:Identifications>") +
                   footer);
}

Bytes longString(std::size_t n) {
    return bytesOf(header + ">" + R"(<s377m:Identification rp210:InstanceUID=")" + uuidText(1) +
                   R"("><s377m:CompanyName>)" + std::string(n, 'v') +
                   "</s377m:CompanyName></s377m:Identification>" + footer);
}

Bytes longHex(std::size_t n) {
    std::string hex;
    hex.reserve(2 * n);
    for (std::size_t i = 0; i < n; ++i) {
        hex += "A5";
    }
    return bytesOf(header + "><groups:FloatingDarkMetadata>" +
                   R"(<groups:DarkMetadata groups:BEROctetCount="4" )" +
                   R"(groups:Key="06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.01">)" + hex +
                   "</groups:DarkMetadata></groups:FloatingDarkMetadata>" + footer);
}

/// Sequences nested through their StructuralComponents, typed-reference style.
Bytes deepNesting(std::size_t n) {
    std::string open;
    std::string close;
    for (std::size_t i = 0; i < n; ++i) {
        open += R"(<s377m:Sequence rp210:InstanceUID=")" +
                uuidText(static_cast<std::uint32_t>(i + 1)) + R"("><s377m:StructuralComponents>)";
        close = "</s377m:StructuralComponents></s377m:Sequence>" + close;
    }
    return bytesOf(header + ">" + open + close + footer);
}

Bytes manyExtensionElements(std::size_t n) {
    std::string items;
    for (std::size_t i = 0; i < n; ++i) {
        items += R"(<groups:DarkElement groups:UniversalLabel=")" +
                 uuidText(static_cast<std::uint32_t>(i), 0x06) + R"(">00</groups:DarkElement>)";
    }
    return bytesOf(
        header + ">" +
        preface("", "<groups:ExtensionElements>" + items + "</groups:ExtensionElements>") + footer);
}

// MXF header metadata, built byte by byte.

void append(Bytes& out, std::uint64_t value, int octets) {
    for (int i = octets - 1; i >= 0; --i) {
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

void appendKLV(Bytes& out, const std::vector<std::uint8_t>& key, const Bytes& value) {
    out.insert(out.end(), key.begin(), key.end());
    out.push_back(0x83); // BER length in 3 octets
    append(out, value.size(), 3);
    out.insert(out.end(), value.begin(), value.end());
}

const std::vector<std::uint8_t> primerKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01,
                                             0x0D, 0x01, 0x02, 0x01, 0x01, 0x05, 0x01, 0x00};
const std::vector<std::uint8_t> prefaceKey = {0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01,
                                              0x0D, 0x01, 0x01, 0x01, 0x01, 0x01, 0x2F, 0x00};

/// What the Preface of `headerMetadata` holds besides its InstanceUID.
enum class Items {
    None,      ///< nothing
    Unknown,   ///< one 2-byte item for each primer entry (labels no dictionary knows)
    Misplaced, ///< `count` items CompanyName (not a Preface element) of 1 byte, which does not
               ///< fit its UTF-16 type
};

/// A primer pack with `entries` dynamic tags (labels no dictionary knows), then a Preface
/// with its InstanceUID and `items`.
Bytes headerMetadata(std::size_t entries, Items items, std::size_t count = 0) {
    Bytes primer;
    append(primer, entries, 4);
    append(primer, 18, 4);
    for (std::size_t i = 0; i < entries; ++i) {
        append(primer, 0x8000 + i, 2);
        const std::vector<std::uint8_t> ul = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01,
                                              0x01, 0x0E, 0x0E, 0x7F, 0x01, 0x01};
        primer.insert(primer.end(), ul.begin(), ul.end());
        append(primer, i, 4);
    }
    Bytes set;
    append(set, 0x3C0A, 2);
    append(set, 16, 2);
    append(set, 0x0102030405060708, 8);
    append(set, 0x090A0B0C0D0E0F10, 8);
    for (std::size_t i = 0; items == Items::Unknown && i < entries; ++i) {
        append(set, 0x8000 + i, 2);
        append(set, 2, 2);
        append(set, i, 2);
    }
    for (std::size_t i = 0; items == Items::Misplaced && i < count; ++i) {
        append(set, 0x3C01, 2); // CompanyName, a static tag
        append(set, 1, 2);
        append(set, i, 1);
    }
    Bytes out;
    appendKLV(out, primerKey, primer);
    appendKLV(out, prefaceKey, set);
    return out;
}

Bytes manyPrimerEntries(std::size_t n) {
    return headerMetadata(n, Items::None);
}

Bytes manyItemsInOneSet(std::size_t n) {
    return headerMetadata(n, Items::Unknown);
}

Bytes manyMisplacedItems(std::size_t n) {
    return headerMetadata(0, Items::Misplaced, n);
}

enum class Reader { XMLImport, MXFRead };

struct Shape {
    const char* name;
    std::size_t n;
    Reader reader;
    Bytes (*make)(std::size_t);
};

const std::vector<Shape> shapes = {
    {"xml: attributes on one set element", 1000, Reader::XMLImport, manyAttributes},
    {"xml: namespace declarations on the root", 1000, Reader::XMLImport, manyNamespaces},
    {"xml: sibling sets", 5000, Reader::XMLImport, manySiblingSets},
    {"xml: strong-reference collection", 1000, Reader::XMLImport, longReferenceCollection},
    {"xml: string value (characters)", 100000, Reader::XMLImport, longString},
    {"xml: hex value (bytes)", 100000, Reader::XMLImport, longHex},
    {"xml: inline nesting (typed references)", 50, Reader::XMLImport, deepNesting},
    {"xml: items in one set", 1000, Reader::XMLImport, manyExtensionElements},
    {"mxf: primer entries", 1000, Reader::MXFRead, manyPrimerEntries},
    {"mxf: items in one local set", 1000, Reader::MXFRead, manyItemsInOneSet},
    {"mxf: misplaced items in one local set", 1000, Reader::MXFRead, manyMisplacedItems},
};

/// Reads `bytes` once the shape's way; a toolkit exception (an input past a limit) ends the
/// benchmark with its message.
void readOnce(const Bytes& bytes, Reader reader,
              const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary) {
    if (reader == Reader::XMLImport) {
        Metadata::PartitionMetadata partition(dictionary);
        benchmark::DoNotOptimize(XML2Partition::getPartitionMetadataFromBuffer(
            bytes.data(), static_cast<std::uint32_t>(bytes.size()), &partition));
    } else {
        benchmark::DoNotOptimize(
            Metadata::PartitionMetadata::read({bytes.data(), bytes.size()}, 0, dictionary));
    }
}

void runShape(benchmark::State& state, const Shape& shape, std::size_t n) {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    const Bytes bytes = shape.make(n);
    for (auto _ : state) {
        try {
            readOnce(bytes, shape.reader, dictionary);
        } catch (const Exceptions::BaseException& e) {
            state.SkipWithError(e.utf8Message().c_str());
            break;
        }
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}

/// Keeps the CPU time per run of every benchmark, by name, besides printing as usual.
class TableReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                m_milliseconds[run.run_name.function_name] =
                    run.error_occurred ? failed : run.GetAdjustedCPUTime();
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    static constexpr double failed = -1.0;
    static constexpr double notRun = -2.0;

    /// The time per run, `failed`, or `notRun` (filtered out).
    double milliseconds(const std::string& name) const {
        const auto found = m_milliseconds.find(name);
        return found == m_milliseconds.end() ? notRun : found->second;
    }

private:
    std::map<std::string, double> m_milliseconds;
};

std::string benchmarkName(const Shape& shape, std::size_t n) {
    return std::string(shape.name) + " n=" + std::to_string(n);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    for (const Shape& shape : shapes) {
        for (const std::size_t n : {shape.n, 10 * shape.n}) {
            benchmark::RegisterBenchmark(
                benchmarkName(shape, n).c_str(),
                [&shape, n](benchmark::State& state) { runShape(state, shape, n); })
                ->Unit(benchmark::kMillisecond)
                ->MinTime(0.2);
        }
    }
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::printf("\n%-42s %8s %12s %12s %7s\n", "shape", "n", "t(n) ms", "t(10n) ms", "ratio");
    for (const Shape& shape : shapes) {
        const double small = reporter.milliseconds(benchmarkName(shape, shape.n));
        const double large = reporter.milliseconds(benchmarkName(shape, 10 * shape.n));
        if (small < 0 || large < 0) {
            const auto text = [](double t) {
                return t == TableReporter::notRun ? "not run" : t < 0 ? "failed" : "ok";
            };
            std::printf("%-42s %8zu %12s %12s %7s\n", shape.name, shape.n, text(small), text(large),
                        "-");
            continue;
        }
        std::printf("%-42s %8zu %12.3f %12.3f %7.1f\n", shape.name, shape.n, small, large,
                    large / small);
    }
    return 0;
}
