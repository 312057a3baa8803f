#include "Vellum/MXF/HeaderMetadataUpdate.h"

#include "MXF/SyntheticMXF.h"
#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "Support/Samples.h"
#include "Support/TempDir.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/MXF/HeaderMetadataRegions.h"
#include "Vellum/MXF/MXFFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <numeric>

namespace {

using Vellum::MXF::HeaderMetadataRegions;
using Vellum::MXF::HeaderMetadataUpdate;
using Vellum::MXF::MXFFile;
using namespace VellumTest;
using Replacements = HeaderMetadataUpdate::Replacements;

// An independent walk over a file's KLVs: the packs' fields, each region's layout, the random
// index pack's entries and the essence values.
struct Walk {
    struct Partition {
        std::uint64_t at = 0; // from the end of the run-in
        Bytes key;
        std::uint32_t kag = 0;
        std::uint64_t thisPartition = 0, previous = 0, footer = 0, headerByteCount = 0;
        std::uint64_t primer = 0;   // absolute
        Bytes content;              // primer up to the last non-fill KLV in the region
        std::uint64_t trailing = 0; // fill after it, within the region
        bool regionEndsOnKLV = false;
    };
    std::vector<Partition> partitions;
    std::vector<std::pair<std::uint32_t, std::uint64_t>> rip;
    Bytes essence;
};

std::uint64_t get(const Bytes& b, std::size_t at, int n) {
    std::uint64_t v = 0;
    for (int i = 0; i < n; ++i) {
        v = (v << 8U) | b[at + i];
    }
    return v;
}

bool keyIs(const Bytes& b, std::size_t at, const Bytes& key, std::size_t n = 16) {
    return std::equal(key.begin(), key.begin() + n, b.begin() + at);
}

Walk walk(const Bytes& file, std::size_t runIn) {
    struct Item {
        std::size_t at, value, end;
    };
    std::vector<Item> items;
    for (std::size_t at = runIn; at < file.size();) {
        const std::uint8_t first = file.at(at + 16);
        const std::size_t octets = first < 0x80 ? 1 : 1 + (first & 0x7F);
        const std::uint64_t length = first < 0x80 ? first : get(file, at + 17, octets - 1);
        items.push_back({at, at + 16 + octets, at + 16 + octets + length});
        at = items.back().end;
    }
    Walk w;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const auto& item = items[i];
        if (keyIs(file, item.at, partitionKey(2, 0), 13) && file[item.at + 13] >= 2 &&
            file[item.at + 13] <= 4) {
            Walk::Partition p;
            p.at = item.at - runIn;
            p.key.assign(file.begin() + item.at, file.begin() + item.at + 16);
            p.kag = get(file, item.value + 4, 4);
            p.thisPartition = get(file, item.value + 8, 8);
            p.previous = get(file, item.value + 16, 8);
            p.footer = get(file, item.value + 24, 8);
            p.headerByteCount = get(file, item.value + 32, 8);
            std::size_t k = i + 1;
            while (k < items.size() && keyIs(file, items[k].at, fillKey)) {
                ++k;
            }
            if (p.headerByteCount > 0 && k < items.size() && keyIs(file, items[k].at, primerKey)) {
                p.primer = items[k].at;
                const std::uint64_t end = p.primer + p.headerByteCount;
                std::size_t contentEnd = p.primer;
                for (; k < items.size() && items[k].end <= end; ++k) {
                    if (!keyIs(file, items[k].at, fillKey)) {
                        contentEnd = items[k].end;
                    }
                }
                p.regionEndsOnKLV = k == items.size() ? end == file.size() : items[k].at == end;
                p.content.assign(file.begin() + p.primer, file.begin() + contentEnd);
                p.trailing = end - contentEnd;
            }
            w.partitions.push_back(p);
        } else if (keyIs(file, item.at, ripKey)) {
            for (std::size_t e = item.value; e + 4 < item.end; e += 12) {
                w.rip.emplace_back(get(file, e, 4), get(file, e + 4, 8));
            }
        } else if (keyIs(file, item.at, essenceKey)) {
            w.essence.insert(w.essence.end(), file.begin() + item.value, file.begin() + item.end);
        }
    }
    return w;
}

// Header metadata of exactly `size` bytes (at least 48).
Bytes metadataOfSize(std::size_t size, std::uint8_t seed = 0x77) {
    return headerMetadata(size - 48, seed);
}

std::vector<std::string> listing(const TempDir& dir) {
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(dir.path())) {
        names.push_back(e.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST(HeaderMetadataUpdate, FillItemsHaveExactlyTheSizeAsked) {
    struct Case {
        std::uint64_t size;
        std::uint8_t preferred; // length octets asked for
        std::size_t octets;     // length octets written
    };
    const Case cases[] = {{17, 0, 1},
                          {18, 0, 2},
                          {19, 0, 3},
                          {20, 0, 4},
                          {21, 0, 4},
                          {1000, 0, 4},
                          {100, 9, 9},
                          {20 + 0xFFFFFF, 0, 4},
                          {21 + 0xFFFFFF, 0, 5},
                          {17, 9, 1},
                          {100, 1, 1},
                          {200, 1, 4},
                          {300, 2, 4},
                          {300, 3, 3}};
    for (const auto& [size, preferred, octets] : cases) {
        const Bytes item =
            HeaderMetadataUpdate::fillItem(HeaderMetadataRegions::defaultFillKey, size, preferred);
        ASSERT_EQ(item.size(), size);
        EXPECT_TRUE(keyIs(item, 0, fillKey));
        const std::size_t got = item[16] < 0x80 ? 1 : 1 + (item[16] & 0x7F);
        EXPECT_EQ(got, octets) << size;
        const std::uint64_t length = got == 1 ? item[16] : get(item, 17, got - 1);
        EXPECT_EQ(16 + got + length, size);
        EXPECT_TRUE(
            std::all_of(item.begin() + 16 + got, item.end(), [](auto b) { return b == 0; }));
    }
    EXPECT_THROW(HeaderMetadataUpdate::fillItem(HeaderMetadataRegions::defaultFillKey, 16),
                 Vellum::Exceptions::InvalidLength);
}

struct InPlaceCase {
    const char* name;
    FileShape shape;
    std::vector<std::pair<std::size_t, std::int64_t>> sizes; // partition, size - header byte count
    bool fits;
};

VELLUM_PRINT_CASE_NAME(InPlaceCase)

class InPlace : public ::testing::TestWithParam<InPlaceCase> {};

TEST_P(InPlace, WritesInsideTheRegionsOrNothing) {
    const auto& c = GetParam();
    const TempDir dir;
    const Bytes original = syntheticFile(c.shape);
    const std::string path = dir.write("in.mxf", original);
    const Walk before = walk(original, c.shape.runIn);
    Replacements replacements;
    for (const auto& [index, delta] : c.sizes) {
        replacements[index] = metadataOfSize(before.partitions[index].headerByteCount + delta,
                                             static_cast<std::uint8_t>(index + 1));
    }
    if (!c.fits) {
        EXPECT_THROW_MSG_HAS(HeaderMetadataUpdate::updateInPlace(path, replacements), InvalidLength,
                             "(nothing was written): partition ");
        EXPECT_EQ(readFile(path), original);
        return;
    }
    HeaderMetadataUpdate::updateInPlace(path, replacements);
    const Bytes updated = readFile(path);
    ASSERT_EQ(updated.size(), original.size());
    const Walk after = walk(updated, c.shape.runIn);
    ASSERT_EQ(after.partitions.size(), before.partitions.size());
    std::size_t changed = 0;
    for (std::size_t i = 0; i < after.partitions.size(); ++i) {
        const auto& p = after.partitions[i];
        const auto& q = before.partitions[i];
        EXPECT_EQ(p.headerByteCount, q.headerByteCount);
        EXPECT_EQ(p.primer, q.primer);
        EXPECT_TRUE(p.regionEndsOnKLV || p.headerByteCount == 0);
        if (replacements.count(i)) {
            EXPECT_EQ(p.content, replacements[i]) << "partition " << i;
            changed += p.headerByteCount;
        } else {
            EXPECT_EQ(p.content, q.content);
        }
    }
    const auto differing =
        std::inner_product(original.begin(), original.end(), updated.begin(), std::size_t{0},
                           std::plus<>(), [](auto a, auto b) { return a != b ? 1 : 0; });
    EXPECT_LE(static_cast<std::size_t>(differing), changed);
    EXPECT_EQ(after.essence, before.essence);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, InPlace,
    ::testing::Values(
        InPlaceCase{"Exact", shape(1, 0), {{0, 0}}, true},
        InPlaceCase{"Spare17", shape(1, 100), {{0, -17}}, true},
        InPlaceCase{"Spare18", shape(1, 100), {{0, -18}}, true},
        InPlaceCase{"Spare19", shape(1, 100), {{0, -19}}, true},
        InPlaceCase{"Spare20", shape(1, 100), {{0, -20}}, true},
        InPlaceCase{"Spare100", shape(1, 100), {{0, -100}}, true},
        InPlaceCase{"Kag512", shape(512, 0), {{0, -300}}, true},
        InPlaceCase{"HeaderAndFooter", shape(512, 0, true), {{0, -40}, {2, 0}}, true},
        InPlaceCase{"OneByteTooMany", shape(1, 0), {{0, 1}}, false},
        InPlaceCase{"SpareBelowAFillItem", shape(1, 100), {{0, -16}}, false},
        InPlaceCase{"FooterFitsHeaderDoesNot", shape(1, 30, true), {{0, 20}, {2, -40}}, false}),
    [](const auto& p) { return std::string(p.param.name); });

struct RewriteCase {
    const char* name;
    FileShape shape;
    std::vector<std::pair<std::size_t, std::int64_t>> sizes; // partition, size - content size
    std::uint64_t reserve;
};

VELLUM_PRINT_CASE_NAME(RewriteCase)

class Rewrite : public ::testing::TestWithParam<RewriteCase> {};

TEST_P(Rewrite, MovesEverythingAfterTheRegionsAndKeepsTheRest) {
    const auto& c = GetParam();
    const TempDir dir;
    const Bytes original = syntheticFile(c.shape);
    const std::string in = dir.write("in.mxf", original);
    const Walk before = walk(original, c.shape.runIn);
    Replacements replacements;
    for (const auto& [index, delta] : c.sizes) {
        replacements[index] = metadataOfSize(before.partitions[index].content.size() + delta,
                                             static_cast<std::uint8_t>(index + 9));
    }
    const std::string out = dir.file("out.mxf");
    HeaderMetadataUpdate::rewrite(in, out, replacements, c.reserve);
    EXPECT_EQ(listing(dir), (std::vector<std::string>{"in.mxf", "out.mxf"}));
    EXPECT_EQ(readFile(in), original);

    const Bytes result = readFile(out);
    if (replacements.empty()) {
        EXPECT_EQ(result, original);
    }
    const Walk after = walk(result, c.shape.runIn);
    EXPECT_TRUE(std::equal(result.begin(), result.begin() + c.shape.runIn, original.begin()));
    ASSERT_EQ(after.partitions.size(), before.partitions.size());
    const std::uint64_t footerAt = after.partitions.back().at;
    for (std::size_t i = 0; i < after.partitions.size(); ++i) {
        const auto& p = after.partitions[i];
        const auto& q = before.partitions[i];
        SCOPED_TRACE("partition " + std::to_string(i));
        EXPECT_EQ(p.key, q.key);
        EXPECT_EQ(p.thisPartition, p.at);
        EXPECT_EQ(p.previous, i == 0 ? 0 : after.partitions[i - 1].at);
        EXPECT_EQ(p.footer, footerAt);
        EXPECT_EQ(p.primer == 0, q.primer == 0);
        if (p.primer == 0) {
            continue;
        }
        EXPECT_TRUE(p.regionEndsOnKLV);
        EXPECT_EQ((p.primer - c.shape.runIn + p.headerByteCount - p.at) % c.shape.kag,
                  c.shape.regionPhase);
        if (replacements.count(i)) {
            EXPECT_EQ(p.content, replacements[i]);
            EXPECT_GE(p.trailing, c.reserve);
            EXPECT_LT(p.trailing, c.reserve + c.shape.kag + 17);
        } else {
            EXPECT_EQ(p.content, q.content);
            EXPECT_EQ(p.headerByteCount, q.headerByteCount);
        }
    }
    EXPECT_EQ(after.essence, before.essence);
    ASSERT_EQ(after.rip.size(), c.shape.withRip ? after.partitions.size() : 0U);
    for (std::size_t i = 0; i < after.rip.size(); ++i) {
        EXPECT_EQ(after.rip[i].second, after.partitions[i].at);
        EXPECT_EQ(after.rip[i].first, before.rip[i].first);
    }

    Vellum::DataIO::File::FileDataSource source(out);
    const MXFFile reread(source);
    EXPECT_EQ(reread.partitions().size(), before.partitions.size());
    EXPECT_TRUE(reread.problems().empty());
    EXPECT_EQ(reread.discovery(), c.shape.withRip ? "random index pack" : "footer chain");
}

FileShape shaped(std::uint32_t kag, bool rip, bool footerMetadata, std::size_t runIn = 0,
                 std::uint8_t headerStatus = 4, std::uint32_t regionPhase = 0) {
    FileShape s = shape(kag, 0, footerMetadata);
    s.withRip = rip;
    s.runIn = runIn;
    s.headerStatus = headerStatus;
    s.regionPhase = regionPhase;
    return s;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Rewrite,
    ::testing::Values(
        RewriteCase{"NothingReplaced", shaped(512, true, true), {}, 0},
        RewriteCase{"Grow", shaped(1, true, false), {{0, 500}}, 0},
        RewriteCase{"Shrink", shaped(1, true, false), {{0, -60}}, 0},
        RewriteCase{"GrowKag512", shaped(512, true, false), {{0, 2000}}, 0},
        RewriteCase{"ShrinkKag512Reserve", shaped(512, false, false), {{0, -60}}, 4096},
        RewriteCase{"SmallReserve", shaped(1, true, false), {{0, 3}}, 10},
        RewriteCase{"HeaderAndFooterRunIn", shaped(1, false, true, 40), {{0, 300}, {2, -50}}, 100},
        RewriteCase{"FooterOnlyOpenHeader", shaped(512, true, true, 0, 1), {{2, 700}}, 0},
        RewriteCase{"UnalignedRegionKeepsItsPhase",
                    shaped(256, true, true, 0, 4, 32),
                    {{0, 900}, {2, -30}},
                    0}),
    [](const auto& p) { return std::string(p.param.name); });

struct ErrorCase {
    const char* name;
    std::size_t index;
    Bytes bytes;
    const char* message;
};

VELLUM_PRINT_CASE_NAME(ErrorCase)

class Errors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(Errors, NameTheProblemAndChangeNothing) {
    const auto& c = GetParam();
    const TempDir dir;
    const Bytes original = syntheticFile(shape(1, 100));
    const std::string in = dir.write("in.mxf", original);
    const Bytes previousOut = {1, 2, 3};
    const std::string out = dir.write("out.mxf", previousOut);
    const Replacements replacements = {{c.index, c.bytes}};
    for (const bool inPlace : {true, false}) {
        EXPECT_THROW_MSG_HAS(inPlace ? HeaderMetadataUpdate::updateInPlace(in, replacements)
                                     : HeaderMetadataUpdate::rewrite(in, out, replacements, 0),
                             InvalidFormat, c.message);
        EXPECT_EQ(readFile(in), original);
        EXPECT_EQ(readFile(out), previousOut);
        EXPECT_EQ(listing(dir), (std::vector<std::string>{"in.mxf", "out.mxf"}));
    }
}

Bytes truncated() {
    Bytes b = headerMetadata(40, 1);
    b.pop_back();
    return b;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Errors,
    ::testing::Values(ErrorCase{"NoSuchPartition", 7, headerMetadata(10, 1), "has no partition 7"},
                      ErrorCase{"BodyWithoutMetadata", 1, headerMetadata(10, 1),
                                "partition 1 (body, pack at offset "},
                      ErrorCase{"NoPrimer", 0, klv(essenceKey, Bytes(40, 0)),
                                "does not start with a primer pack"},
                      ErrorCase{"BrokenKLV", 0, truncated(), "is not a sequence of KLV triplets"}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(HeaderMetadataUpdate, FilesThatCannotBeReadOrWrittenAreNamed) {
    const TempDir dir;
    const std::string in = dir.write("in.mxf", syntheticFile(shape(1, 0)));
    const Replacements replacements = {{0, headerMetadata(10, 1)}};
    EXPECT_THROW(HeaderMetadataUpdate::updateInPlace(dir.file("missing.mxf"), replacements),
                 Vellum::Exceptions::IOError);
    EXPECT_THROW(HeaderMetadataUpdate::rewrite(in, dir.file("no/such/dir/out.mxf"), replacements),
                 Vellum::Exceptions::IOError);
    // A pipe cannot be replaced by the checked copy, and is left as it is.
    ASSERT_EQ(mkfifo(dir.file("pipe").c_str(), 0600), 0);
    EXPECT_THROW(HeaderMetadataUpdate::rewrite(in, dir.file("pipe"), replacements),
                 Vellum::Exceptions::IOError);
    EXPECT_TRUE(std::filesystem::is_fifo(dir.file("pipe")));
    EXPECT_EQ(listing(dir), (std::vector<std::string>{"in.mxf", "pipe"}));
}

TEST(HeaderMetadataUpdate, ComparisonFindsTheFirstDifferenceOutsideTheRegions) {
    const TempDir dir;
    const FileShape s = shaped(512, true, true);
    Bytes original = syntheticFile(s);
    const std::string a = dir.write("a.mxf", original);
    const Walk w = walk(original, 0);
    // Inside a region: no difference.
    original[w.partitions[0].primer + 30] ^= 1;
    const std::string b = dir.write("b.mxf", original);
    EXPECT_NO_THROW(HeaderMetadataUpdate::compareOutsideRegions(a, b));
    // In the essence: named by its offset.
    const std::size_t essenceByte = w.partitions[1].at + 108 + 2000;
    original[essenceByte] ^= 1;
    const std::string c = dir.write("c.mxf", original);
    EXPECT_THROW_MSG_HAS(HeaderMetadataUpdate::compareOutsideRegions(a, c), InvalidFormat,
                         "offset " + std::to_string(essenceByte) + " of");
}

// Each bundled sample with its own header metadata (without trailing fill) as replacement: in
// place gives the same bytes, a rewrite the same header metadata and essence.
class SampleUpdate : public ::testing::TestWithParam<std::string> {};

TEST_P(SampleUpdate, OwnHeaderMetadataRoundTrips) {
    const TempDir dir;
    const std::string sample = sampleDir() + "/" + GetParam();
    const Bytes original = readFile(sample);
    const std::string path = dir.write("in.mxf", original);
    Replacements replacements;
    std::vector<Bytes> contents;
    {
        Vellum::DataIO::File::FileDataSource source(path);
        const MXFFile file(source);
        const HeaderMetadataRegions regions(source, file);
        for (const auto& region : regions.regions()) {
            const Bytes bytes(original.begin() + region.offset,
                              original.begin() + region.offset + region.contentSize);
            replacements[region.partitionIndex] = bytes;
            contents.push_back(bytes);
        }
    }
    ASSERT_FALSE(replacements.empty());
    HeaderMetadataUpdate::updateInPlace(path, replacements);
    EXPECT_EQ(readFile(path), original);

    const std::string out = dir.file("out.mxf");
    HeaderMetadataUpdate::rewrite(path, out, replacements, 0);
    Vellum::DataIO::File::FileDataSource source(out);
    const MXFFile file(source);
    std::vector<Bytes> rewritten;
    const HeaderMetadataRegions regions(source, file);
    for (const auto& region : regions.regions()) {
        const auto metadata = file.readHeaderMetadata(file.partitions()[region.partitionIndex]);
        rewritten.emplace_back(metadata.bytes.begin(), metadata.bytes.begin() + region.contentSize);
    }
    EXPECT_EQ(rewritten, contents);
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleUpdate, ::testing::ValuesIn(sampleNames()),
                         VellumTest::sampleTestName);

} // namespace
