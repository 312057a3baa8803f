#include "Vellum/MXF/HeaderMetadataUpdate.h"

#include "DataIO/ReplacedFile.h"

#include "Vellum/DataIO/BigEndian.h"
#include "Vellum/DataIO/File/FileDataSink.h"
#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/KLV/TripletReader.h"
#include "Vellum/MXF/HeaderMetadataRegions.h"
#include "Vellum/MXF/MXFFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace Vellum::MXF {
namespace {

constexpr std::size_t chunkSize = std::size_t{1} << 20;

// Offsets of the fields a rewrite changes, within a partition pack's value.
constexpr std::size_t thisPartitionField = 8;
constexpr std::size_t previousPartitionField = 16;
constexpr std::size_t footerPartitionField = 24;
constexpr std::size_t headerByteCountField = 32;
constexpr std::size_t changedFieldsEnd = 40;

// A file opened with POSIX calls, for positioned reads and writes of any size.
class PosixFile {
public:
    PosixFile(const std::string& path, int flags, const char* purpose)
        : m_path(path)
        , m_fd(::open(path.c_str(), flags | O_CLOEXEC)) {
        if (m_fd < 0) {
            VELLUM_THROW(IOError,
                         "cannot open '" + path + "' " + purpose + ": " + std::strerror(errno));
        }
    }
    PosixFile(const PosixFile&) = delete;
    PosixFile& operator=(const PosixFile&) = delete;
    ~PosixFile() { ::close(m_fd); }

    std::uint64_t size() const {
        struct stat info {};
        if (::fstat(m_fd, &info) != 0) {
            fail("measure", 0);
        }
        return static_cast<std::uint64_t>(info.st_size);
    }

    void readAt(std::uint64_t offset, std::uint8_t* out, std::size_t count) const {
        while (count > 0) {
            const ssize_t n = ::pread(m_fd, out, count, static_cast<off_t>(offset));
            if (n < 0 && errno == EINTR) {
                continue;
            }
            if (n <= 0) {
                if (n == 0) {
                    VELLUM_THROW(IOError, "cannot read '" + m_path + "' at offset " +
                                              std::to_string(offset) + ": the file ends there");
                }
                fail("read", offset);
            }
            out += n;
            offset += static_cast<std::uint64_t>(n);
            count -= static_cast<std::size_t>(n);
        }
    }

    std::vector<std::uint8_t> readAt(std::uint64_t offset, std::uint64_t count) const {
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count));
        readAt(offset, bytes.data(), bytes.size());
        return bytes;
    }

    void writeAt(std::uint64_t offset, const std::uint8_t* bytes, std::size_t count) {
        while (count > 0) {
            const ssize_t n = ::pwrite(m_fd, bytes, count, static_cast<off_t>(offset));
            if (n < 0 && errno == EINTR) {
                continue;
            }
            if (n <= 0) {
                fail("write", offset);
            }
            bytes += n;
            offset += static_cast<std::uint64_t>(n);
            count -= static_cast<std::size_t>(n);
        }
    }

    void sync() {
        if (::fsync(m_fd) != 0) {
            fail("sync", 0);
        }
    }

private:
    [[noreturn]] void fail(const char* what, std::uint64_t offset) const {
        VELLUM_THROW(IOError, std::string("cannot ") + what + " '" + m_path + "'" +
                                  (offset != 0 ? " at offset " + std::to_string(offset) : "") +
                                  ": " + std::strerror(errno));
    }

    std::string m_path;
    int m_fd;
};

// Removes a file on scope exit unless released.
class RemoveOnExit {
public:
    explicit RemoveOnExit(std::string path)
        : m_path(std::move(path)) {}
    RemoveOnExit(const RemoveOnExit&) = delete;
    RemoveOnExit& operator=(const RemoveOnExit&) = delete;
    ~RemoveOnExit() {
        if (!m_path.empty()) {
            std::remove(m_path.c_str());
        }
    }
    void release() noexcept { m_path.clear(); }

private:
    std::string m_path;
};

std::string describe(const PartitionPack& pack, std::size_t index) {
    return "partition " + std::to_string(index) + " (" + pack.kindName() + ", pack at offset " +
           std::to_string(pack.offset()) + ")";
}

// Where the value of a KLV triplet starts, from the first byte of its length field.
std::size_t valueStart(const std::vector<std::uint8_t>& klv) {
    const std::uint8_t first = klv.at(KLV::Key::byteCount);
    return KLV::Key::byteCount + 1 + (first < 0x80 ? 0U : (first & 0x7FU));
}

// The file's structure, as every operation here needs it.
struct Layout {
    explicit Layout(const std::string& path)
        : source(path)
        , file(source)
        , regions(source, file) {}

    DataIO::File::FileDataSource source;
    MXFFile file;
    HeaderMetadataRegions regions;
};

// The region that replacement `index` goes into, after checking the replacement's bytes.
const HeaderMetadataRegion& targetRegion(const Layout& layout, const std::string& path,
                                         std::size_t index,
                                         const std::vector<std::uint8_t>& bytes) {
    const auto& partitions = layout.file.partitions();
    if (index >= partitions.size()) {
        VELLUM_THROW(InvalidFormat, "'" + path + "' has no partition " + std::to_string(index) +
                                        ": it has " + std::to_string(partitions.size()) +
                                        " (0 to " + std::to_string(partitions.size() - 1) + ")");
    }
    const HeaderMetadataRegion* region = layout.regions.find(index);
    if (region == nullptr) {
        VELLUM_THROW(InvalidFormat, describe(partitions[index], index) + " of '" + path +
                                        "' carries no header metadata to replace");
    }
    if (bytes.size() < KLV::Key::byteCount ||
        !KLV::isPrimerPack(KLV::Key(bytes.data(), KLV::Key::byteCount))) {
        VELLUM_THROW(InvalidFormat, "the new header metadata for " +
                                        describe(partitions[index], index) +
                                        " does not start with a primer pack");
    }
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::TripletReader reader(source);
    try {
        while (reader.next()) {
        }
    } catch (const Exceptions::BaseException& e) {
        VELLUM_THROW(InvalidFormat, "the new header metadata for " +
                                        describe(partitions[index], index) +
                                        " is not a sequence of KLV triplets: " + e.utf8Message());
    }
    return *region;
}

// New bytes of a rewritten region: the replacement, then fill that leaves at least `reserve`
// bytes and ends the region at the original region's distance from a KAG boundary.
std::vector<std::uint8_t> grownRegion(const HeaderMetadataRegion& region, const KLV::Key& fillKey,
                                      const std::vector<std::uint8_t>& bytes,
                                      std::uint64_t reserve) {
    const std::uint64_t kag = region.kagSize <= 1 ? 1 : region.kagSize;
    const std::uint64_t phase = (region.end() - region.packOffset) % kag;
    const std::uint64_t end = region.offset - region.packOffset + bytes.size();
    std::uint64_t fill = reserve;
    for (;;) {
        fill += (phase + kag - (end + fill) % kag) % kag;
        if (fill == 0 || fill >= HeaderMetadataUpdate::minFillSize) {
            break;
        }
        ++fill; // too small for a fill item: take the next boundary
    }
    std::vector<std::uint8_t> out = bytes;
    if (fill > 0) {
        const auto item = HeaderMetadataUpdate::fillItem(fillKey, fill, region.fillLengthOctets);
        out.insert(out.end(), item.begin(), item.end());
    }
    return out;
}

// One stretch of the input that the output replaces with other bytes.
struct Edit {
    std::uint64_t offset;
    std::uint64_t oldSize;
    std::vector<std::uint8_t> bytes;
};

// Offsets as partition packs and the random index pack store them (from the end of the run-in),
// moved by the size changes of the regions that lie before them.
class OffsetMap {
public:
    OffsetMap(std::uint64_t runIn, std::vector<std::pair<std::uint64_t, std::int64_t>> shifts)
        : m_runIn(runIn)
        , m_shifts(std::move(shifts)) {}

    std::uint64_t operator()(std::uint64_t stored) const {
        const std::uint64_t absolute = stored + m_runIn;
        std::int64_t delta = 0;
        for (const auto& [regionEnd, shift] : m_shifts) {
            if (regionEnd <= absolute) {
                delta += shift;
            }
        }
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(stored) + delta);
    }

private:
    std::uint64_t m_runIn;
    std::vector<std::pair<std::uint64_t, std::int64_t>> m_shifts; // region end, size change
};

void store64At(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint64_t value) {
    DataIO::BigEndian::store64(bytes.data() + at, value);
}

std::uint64_t load64At(const std::vector<std::uint8_t>& bytes, std::size_t at) {
    return DataIO::BigEndian::load64(bytes.data() + at);
}

void copyRange(const PosixFile& in, std::uint64_t from, std::uint64_t to, DataIO::DataSink& sink,
               std::vector<std::uint8_t>& buffer) {
    while (from < to) {
        const std::size_t n =
            static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), to - from));
        in.readAt(from, buffer.data(), n);
        sink.write(buffer.data(), n);
        from += n;
    }
}

// The stretches of a file that `compareOutsideRegions` skips, in order.
std::vector<std::pair<std::uint64_t, std::uint64_t>> skippedSpans(const Layout& layout) {
    std::vector<std::pair<std::uint64_t, std::uint64_t>> spans;
    for (const auto& pack : layout.file.partitions()) {
        spans.emplace_back(pack.offset(), pack.endOffset());
    }
    for (const auto& region : layout.regions.regions()) {
        spans.emplace_back(region.offset, region.end());
    }
    if (layout.file.randomIndexPack()) {
        spans.emplace_back(layout.file.randomIndexPack()->offset(), layout.source.size());
    }
    std::sort(spans.begin(), spans.end());
    return spans;
}

// The bytes a file keeps outside its skipped spans, read in order.
class KeptBytes {
public:
    KeptBytes(const std::string& path, const Layout& layout)
        : m_file(path, O_RDONLY, "for reading") {
        std::uint64_t at = 0;
        for (const auto& [begin, end] : skippedSpans(layout)) {
            if (begin > at) {
                m_spans.emplace_back(at, begin);
            }
            at = std::max(at, end);
        }
        if (at < layout.source.size()) {
            m_spans.emplace_back(at, layout.source.size());
        }
    }

    bool atEnd() const noexcept { return m_span == m_spans.size(); }
    std::uint64_t position() const noexcept {
        return atEnd() ? 0 : m_spans[m_span].first + m_within;
    }
    std::uint64_t available() const noexcept {
        return atEnd() ? 0 : m_spans[m_span].second - m_spans[m_span].first - m_within;
    }
    void read(std::uint8_t* out, std::size_t count) {
        m_file.readAt(position(), out, count);
        m_within += count;
        if (available() == 0) {
            ++m_span;
            m_within = 0;
        }
    }

private:
    PosixFile m_file;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> m_spans;
    std::size_t m_span = 0;
    std::uint64_t m_within = 0;
};

void comparePacks(const std::string& pathA, const Layout& a, const std::string& pathB,
                  const Layout& b) {
    const auto& packsA = a.file.partitions();
    const auto& packsB = b.file.partitions();
    if (packsA.size() != packsB.size()) {
        VELLUM_THROW(InvalidFormat, "'" + pathA + "' has " + std::to_string(packsA.size()) +
                                        " partitions, '" + pathB + "' has " +
                                        std::to_string(packsB.size()));
    }
    const PosixFile fileA(pathA, O_RDONLY, "for reading");
    const PosixFile fileB(pathB, O_RDONLY, "for reading");
    for (std::size_t i = 0; i < packsA.size(); ++i) {
        auto bytesA = fileA.readAt(packsA[i].offset(), packsA[i].endOffset() - packsA[i].offset());
        auto bytesB = fileB.readAt(packsB[i].offset(), packsB[i].endOffset() - packsB[i].offset());
        for (auto* bytes : {&bytesA, &bytesB}) {
            const std::size_t value = valueStart(*bytes);
            std::fill(bytes->begin() + static_cast<std::ptrdiff_t>(value + thisPartitionField),
                      bytes->begin() + static_cast<std::ptrdiff_t>(value + changedFieldsEnd), 0);
        }
        if (bytesA != bytesB) {
            VELLUM_THROW(InvalidFormat, "the pack of partition " + std::to_string(i) +
                                            " differs beyond its offsets: offset " +
                                            std::to_string(packsA[i].offset()) + " of '" + pathA +
                                            "', offset " + std::to_string(packsB[i].offset()) +
                                            " of '" + pathB + "'");
        }
    }
    const auto& ripA = a.file.randomIndexPack();
    const auto& ripB = b.file.randomIndexPack();
    const bool sameRip =
        ripA.has_value() == ripB.has_value() &&
        (!ripA ||
         (ripA->entries().size() == ripB->entries().size() &&
          std::equal(ripA->entries().begin(), ripA->entries().end(), ripB->entries().begin(),
                     [](const auto& x, const auto& y) { return x.bodySID == y.bodySID; })));
    if (!sameRip) {
        VELLUM_THROW(InvalidFormat, "the random index packs of '" + pathA + "' and '" + pathB +
                                        "' differ beyond their offsets");
    }
}

} // namespace

std::vector<std::uint8_t> HeaderMetadataUpdate::fillItem(const KLV::Key& key, std::uint64_t size,
                                                         std::uint8_t lengthOctets) {
    if (size < minFillSize) {
        VELLUM_THROW(InvalidLength, "a KLV fill item needs at least " +
                                        std::to_string(minFillSize) + " bytes, not " +
                                        std::to_string(size));
    }
    const auto fits = [size](std::size_t octets) {
        if (octets < 1 || octets > 9 || size < KLV::Key::byteCount + octets) {
            return false;
        }
        const std::uint64_t value = size - KLV::Key::byteCount - octets;
        return octets == 1 ? value < 0x80 : octets == 9 || value >> (8 * (octets - 1)) == 0;
    };
    // Items under 20 bytes take a length field of their whole spare room (value 0); larger ones
    // a 4-octet field, or more when the value needs more than 3 octets.
    std::size_t octets = lengthOctets;
    if (!fits(octets)) {
        octets = size < 20 ? static_cast<std::size_t>(size - KLV::Key::byteCount) : 4;
        while (!fits(octets)) {
            ++octets;
        }
    }
    const std::uint64_t value = size - KLV::Key::byteCount - octets;
    std::vector<std::uint8_t> out(key.data(), key.data() + KLV::Key::byteCount);
    if (octets == 1) {
        out.push_back(static_cast<std::uint8_t>(value));
    } else {
        out.push_back(static_cast<std::uint8_t>(0x80 | (octets - 1)));
        for (std::size_t i = octets - 1; i-- > 0;) {
            out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    }
    out.resize(static_cast<std::size_t>(size), 0);
    return out;
}

void HeaderMetadataUpdate::updateInPlace(const std::string& path,
                                         const Replacements& replacements) {
    std::vector<std::pair<std::uint64_t, std::vector<std::uint8_t>>> writes;
    std::uint64_t sizeBefore = 0;
    {
        const Layout layout(path);
        sizeBefore = layout.source.size();
        std::string tooBig;
        for (const auto& [index, bytes] : replacements) {
            const HeaderMetadataRegion& region = targetRegion(layout, path, index, bytes);
            const std::uint64_t size = bytes.size();
            if (size != region.size && (size > region.size || region.size - size < minFillSize)) {
                tooBig += std::string(tooBig.empty() ? "" : "; ") +
                          describe(layout.file.partitions()[index], index) + " has " +
                          std::to_string(region.size) + " bytes of header metadata at offset " +
                          std::to_string(region.offset) + ", the new header metadata needs " +
                          std::to_string(size) +
                          (size < region.size ? " and a fill item of at least 17" : "");
                continue;
            }
            std::vector<std::uint8_t> out = bytes;
            if (size < region.size) {
                const auto fill = fillItem(layout.regions.fillKeyFor(region), region.size - size,
                                           region.fillLengthOctets);
                out.insert(out.end(), fill.begin(), fill.end());
            }
            writes.emplace_back(region.offset, std::move(out));
        }
        if (!tooBig.empty()) {
            VELLUM_THROW(InvalidLength, "the header metadata does not fit in place in '" + path +
                                            "' (nothing was written): " + tooBig);
        }
    }
    PosixFile file(path, O_RDWR, "for writing");
    if (file.size() != sizeBefore) {
        VELLUM_THROW(IOError, "'" + path + "' changed size while it was being read (" +
                                  std::to_string(sizeBefore) + " then " +
                                  std::to_string(file.size()) + " bytes); nothing was written");
    }
    for (const auto& [offset, bytes] : writes) {
        file.writeAt(offset, bytes.data(), bytes.size());
    }
    file.sync();
}

void HeaderMetadataUpdate::rewrite(const std::string& inPath, const std::string& outPath,
                                   const Replacements& replacements, std::uint64_t reserve) {
    // The copy replaces `outPath` by renaming, which a device or pipe cannot take.
    const DataIO::File::detail::ReplacedFile replaced(outPath);
    if (replaced.isSpecial()) {
        VELLUM_THROW(IOError, "cannot write '" + outPath + "': not a regular file");
    }
    const Layout layout(inPath);
    const MXFFile& file = layout.file;

    std::vector<Edit> edits;
    std::vector<std::pair<std::uint64_t, std::int64_t>> shifts;
    std::map<std::size_t, std::uint64_t> newByteCounts;
    for (const auto& [index, bytes] : replacements) {
        const HeaderMetadataRegion& region = targetRegion(layout, inPath, index, bytes);
        auto out = grownRegion(region, layout.regions.fillKeyFor(region), bytes, reserve);
        shifts.emplace_back(region.end(), static_cast<std::int64_t>(out.size()) -
                                              static_cast<std::int64_t>(region.size));
        newByteCounts[index] = out.size();
        edits.push_back({region.offset, region.size, std::move(out)});
    }
    const OffsetMap moved(file.runInLength(), shifts);

    const PosixFile in(inPath, O_RDONLY, "for reading");
    for (std::size_t i = 0; i < file.partitions().size(); ++i) {
        const PartitionPack& pack = file.partitions()[i];
        auto bytes = in.readAt(pack.offset(), pack.endOffset() - pack.offset());
        const std::size_t value = valueStart(bytes);
        store64At(bytes, value + thisPartitionField, moved(pack.thisPartition()));
        store64At(bytes, value + previousPartitionField, moved(pack.previousPartition()));
        store64At(bytes, value + footerPartitionField, moved(pack.footerPartition()));
        if (const auto it = newByteCounts.find(i); it != newByteCounts.end()) {
            store64At(bytes, value + headerByteCountField, it->second);
        }
        edits.push_back({pack.offset(), bytes.size(), std::move(bytes)});
    }
    if (const auto& rip = file.randomIndexPack()) {
        auto bytes = in.readAt(rip->offset(), layout.source.size() - rip->offset());
        const std::size_t value = valueStart(bytes);
        for (std::size_t e = 0; e < rip->entries().size(); ++e) {
            const std::size_t at = value + e * 12 + 4;
            store64At(bytes, at, moved(load64At(bytes, at)));
        }
        edits.push_back({rip->offset(), bytes.size(), std::move(bytes)});
    }
    std::sort(edits.begin(), edits.end(),
              [](const Edit& a, const Edit& b) { return a.offset < b.offset; });

    // Written under a staging name, checked, then renamed: `outPath` is replaced only by a
    // complete, verified file. A symbolic link keeps pointing at the new file.
    const std::string staging = replaced.path() + ".vellum-apply";
    RemoveOnExit removeStaging(staging);
    {
        DataIO::File::FileDataSink sink(staging);
        std::vector<std::uint8_t> buffer(chunkSize);
        std::uint64_t at = 0;
        for (const Edit& edit : edits) {
            copyRange(in, at, edit.offset, sink, buffer);
            sink.write(edit.bytes.data(), edit.bytes.size());
            at = edit.offset + edit.oldSize;
        }
        copyRange(in, at, layout.source.size(), sink, buffer);
        sink.commit();
    }
    PosixFile(staging, O_RDONLY, "to sync it").sync();
    compareOutsideRegions(inPath, staging);
    replaced.lendPermissionsTo(staging);
    if (std::rename(staging.c_str(), replaced.path().c_str()) != 0) {
        VELLUM_THROW(IOError,
                     "cannot move '" + staging + "' to '" + outPath + "': " + std::strerror(errno));
    }
    removeStaging.release();
}

void HeaderMetadataUpdate::compareOutsideRegions(const std::string& pathA,
                                                 const std::string& pathB) {
    const Layout a(pathA);
    const Layout b(pathB);
    comparePacks(pathA, a, pathB, b);

    KeptBytes keptA(pathA, a);
    KeptBytes keptB(pathB, b);
    std::vector<std::uint8_t> bufferA(chunkSize);
    std::vector<std::uint8_t> bufferB(chunkSize);
    while (!keptA.atEnd() && !keptB.atEnd()) {
        const std::uint64_t atA = keptA.position();
        const std::uint64_t atB = keptB.position();
        const std::size_t n = static_cast<std::size_t>(
            std::min({keptA.available(), keptB.available(), std::uint64_t{chunkSize}}));
        keptA.read(bufferA.data(), n);
        keptB.read(bufferB.data(), n);
        const auto [diffA, diffB] =
            std::mismatch(bufferA.begin(), bufferA.begin() + n, bufferB.begin());
        if (diffA != bufferA.begin() + n) {
            const auto k = static_cast<std::uint64_t>(diffA - bufferA.begin());
            VELLUM_THROW(InvalidFormat, "the files differ outside their header metadata: offset " +
                                            std::to_string(atA + k) + " of '" + pathA +
                                            "' and offset " + std::to_string(atB + k) + " of '" +
                                            pathB + "'");
        }
    }
    if (!keptA.atEnd() || !keptB.atEnd()) {
        const bool aLonger = !keptA.atEnd();
        VELLUM_THROW(InvalidFormat,
                     "the files differ outside their header metadata: '" +
                         (aLonger ? pathB : pathA) + "' ends where offset " +
                         std::to_string(aLonger ? keptA.position() : keptB.position()) + " of '" +
                         (aLonger ? pathA : pathB) + "' still has bytes");
    }
}

} // namespace Vellum::MXF
