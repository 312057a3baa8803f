// Writing new header metadata into a 1 GiB MXF file: in place, and as a rewritten copy whose
// header metadata grows by 100 KB, keeping 64 KiB of spare fill (streamed copy, sync, and the
// check that re-reads both files).
// The file is generated once into a temporary directory: a header partition with 256 KiB of
// header metadata and 64 KiB of spare fill, 1024 essence items of 1 MiB in a body partition, a
// footer and a random index pack, KAG 512. "peak MiB" is the process's peak resident size; run
// one benchmark per process (--benchmark_filter) for a figure that is its own.
#include "Vellum/MXF/HeaderMetadataUpdate.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <system_error>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using Vellum::MXF::HeaderMetadataUpdate;

constexpr std::uint32_t kag = 512;
constexpr std::size_t essenceItems = 1024;
constexpr std::size_t essenceItemSize = std::size_t{1} << 20;
constexpr std::size_t setCount = 2048;
constexpr std::size_t setPayload = 108; // 128-byte sets: 256 KiB of sets
constexpr std::size_t spareFill = 64 * 1024;

double peakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void put(Bytes& out, std::uint64_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) {
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

Bytes klv(Bytes key, const Bytes& value) {
    key.push_back(0x83);
    put(key, value.size(), 3);
    key.insert(key.end(), value.begin(), value.end());
    return key;
}

Bytes fill(std::uint64_t size) {
    Bytes out = {0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                 0x03, 0x01, 0x02, 0x10, 0x01, 0x00, 0x00, 0x00};
    out.push_back(0x83);
    put(out, size - 20, 3);
    out.resize(size, 0);
    return out;
}

// Fill that takes `used` bytes from a partition pack's key to the next KAG boundary.
Bytes kagFill(std::uint64_t used) {
    std::uint64_t size = (kag - used % kag) % kag;
    if (size == 0) {
        return {};
    }
    while (size < 20) {
        size += kag;
    }
    return fill(size);
}

Bytes partitionPack(std::uint8_t kind, std::uint64_t thisPartition, std::uint64_t previous,
                    std::uint64_t footer, std::uint64_t headerByteCount, std::uint32_t bodySID) {
    Bytes v;
    put(v, 1, 2);
    put(v, 3, 2);
    put(v, kag, 4);
    put(v, thisPartition, 8);
    put(v, previous, 8);
    put(v, footer, 8);
    put(v, headerByteCount, 8);
    put(v, 0, 8);
    put(v, 0, 4);
    put(v, 0, 8);
    put(v, bodySID, 4);
    v.insert(v.end(), 16, 0x0F);
    put(v, 0, 4);
    put(v, 16, 4);
    return klv({0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01, 0x01, kind,
                0x04, 0x00},
               v);
}

// A primer and `sets` preface-keyed local sets of `payload` bytes; no fill.
Bytes headerMetadata(std::size_t sets, std::size_t payload) {
    Bytes primer;
    put(primer, 0, 4);
    put(primer, 18, 4);
    Bytes out = klv({0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01, 0x01,
                     0x05, 0x01, 0x00},
                    primer);
    for (std::size_t i = 0; i < sets; ++i) {
        const Bytes set = klv({0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0D, 0x01, 0x01,
                               0x01, 0x01, 0x01, 0x2F, 0x00},
                              Bytes(payload, static_cast<std::uint8_t>(i)));
        out.insert(out.end(), set.begin(), set.end());
    }
    return out;
}

class BenchFile {
public:
    BenchFile() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "vellum-apply-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("cannot create a temporary directory");
        }
        m_dir = pattern;
        m_path = (m_dir / "in.mxf").string();
        generate();
    }
    BenchFile(const BenchFile&) = delete;
    BenchFile& operator=(const BenchFile&) = delete;
    ~BenchFile() {
        std::error_code ignored;
        std::filesystem::remove_all(m_dir, ignored);
    }

    const std::string& path() const noexcept { return m_path; }
    std::string file(const std::string& name) const { return (m_dir / name).string(); }
    std::uint64_t size() const { return std::filesystem::file_size(m_path); }
    std::uint64_t regionSize() const noexcept { return m_regionSize; }

    static BenchFile& instance() {
        static BenchFile file;
        return file;
    }

private:
    void generate() {
        const std::uint64_t packSize = partitionPack(2, 0, 0, 0, 0, 0).size();
        Bytes region = headerMetadata(setCount, setPayload);
        const Bytes before = kagFill(packSize);
        const Bytes spare = fill(spareFill);
        region.insert(region.end(), spare.begin(), spare.end());
        const Bytes align = kagFill(packSize + before.size() + region.size());
        region.insert(region.end(), align.begin(), align.end());
        m_regionSize = region.size();

        const Bytes bodyFill = kagFill(packSize);
        const std::uint64_t body = packSize + before.size() + region.size();
        const std::uint64_t footer =
            body + packSize + bodyFill.size() + essenceItems * essenceItemSize;

        std::FILE* out = std::fopen(m_path.c_str(), "wb");
        if (out == nullptr) {
            throw std::runtime_error("cannot create " + m_path);
        }
        const auto write = [out](const Bytes& bytes) {
            if (std::fwrite(bytes.data(), 1, bytes.size(), out) != bytes.size()) {
                throw std::runtime_error("cannot write the benchmark file");
            }
        };
        write(partitionPack(2, 0, 0, footer, region.size(), 0));
        write(before);
        write(region);
        write(partitionPack(3, body, 0, footer, 0, 1));
        write(bodyFill);
        Bytes item = klv({0x06, 0x0E, 0x2B, 0x34, 0x01, 0x02, 0x01, 0x01, 0x0D, 0x01, 0x03, 0x01,
                          0x15, 0x01, 0x05, 0x00},
                         Bytes(essenceItemSize - 20, 0));
        for (std::size_t i = 0; i < essenceItems; ++i) {
            item[20] = static_cast<std::uint8_t>(i); // not all zero: real bytes on disk
            write(item);
        }
        write(partitionPack(4, footer, body, footer, 0, 0));
        Bytes rip;
        for (const std::uint64_t at : {std::uint64_t{0}, body, footer}) {
            put(rip, at == body ? 1 : 0, 4);
            put(rip, at, 8);
        }
        put(rip, 16 + 4 + rip.size() + 4, 4);
        write(klv({0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0D, 0x01, 0x02, 0x01, 0x01,
                   0x11, 0x01, 0x00},
                  rip));
        if (std::fclose(out) != 0) {
            throw std::runtime_error("cannot write " + m_path);
        }
    }

    std::filesystem::path m_dir;
    std::string m_path;
    std::uint64_t m_regionSize = 0;
};

void BM_UpdateInPlace(benchmark::State& state) {
    BenchFile& file = BenchFile::instance();
    // The same sets with one changed byte each time: fits with the spare fill.
    Bytes metadata = headerMetadata(setCount, setPayload);
    for (auto _ : state) {
        metadata.back() ^= 1;
        HeaderMetadataUpdate::updateInPlace(file.path(), {{0, metadata}});
    }
    state.counters["file GiB"] = static_cast<double>(file.size()) / (1 << 30);
    state.counters["peak MiB"] = peakMiB();
}

void BM_RewriteGrow100KB(benchmark::State& state) {
    BenchFile& file = BenchFile::instance();
    const Bytes grown = headerMetadata(setCount + 100 * 1000 / 128, setPayload);
    const std::string out = file.file("out.mxf");
    for (auto _ : state) {
        HeaderMetadataUpdate::rewrite(file.path(), out, {{0, grown}}, spareFill);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * file.size()));
    state.counters["metadata +KB"] =
        static_cast<double>(grown.size() - headerMetadata(setCount, setPayload).size()) / 1000.0;
    state.counters["file +KB"] =
        static_cast<double>(std::filesystem::file_size(out) - file.size()) / 1000.0;
    state.counters["peak MiB"] = peakMiB();
}

} // namespace

BENCHMARK(BM_UpdateInPlace)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RewriteGrow100KB)->Unit(benchmark::kMillisecond)->Iterations(3);
