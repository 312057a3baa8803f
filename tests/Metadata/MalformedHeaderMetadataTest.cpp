#include "Metadata/HeaderMetadataBytes.h"
#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "Support/TempDir.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"

#include <gtest/gtest.h>

namespace {

using namespace VellumTest;
using Vellum::Metadata::PartitionMetadata;

struct Malformed {
    const char* name;
    Bytes bytes;
    const char* kind;
    const char* messagePart;
};
VELLUM_PRINT_CASE_NAME(Malformed)

class MalformedHeaderMetadata : public ::testing::TestWithParam<Malformed> {};

TEST_P(MalformedHeaderMetadata, IsRefusedNamingWhereAndWhat) {
    const auto& c = GetParam();
    EXPECT_TRUE(VellumTest::throwsNamed(
        [&] {
            PartitionMetadata::read({c.bytes.data(), c.bytes.size()}, 1000,
                                    Vellum::MetaMetadata::Dictionary::builtIn());
        },
        c.kind, c.messagePart));
}

// A primer pack that claims `count` entries of `size` bytes and holds `bytes` bytes of them.
Bytes primerClaiming(std::uint32_t count, std::uint32_t size, std::size_t bytes) {
    Bytes value;
    put(value, count, 4);
    put(value, size, 4);
    value.resize(8 + bytes, 0x01);
    return klv(primerKey, value);
}

Bytes itemPastItsSet() {
    Bytes items = item(0x3C0A, uuid(0xAA));
    items[3] = 40; // claims 40 bytes, 16 follow
    return concat({primer({}), klv(prefaceKey, items)});
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, MalformedHeaderMetadata,
    ::testing::Values(
        Malformed{"empty",
                  {},
                  "InvalidFormat",
                  "must start with the primer pack; found nothing at offset 1000"},
        Malformed{"noPrimer", klv(prefaceKey, {}), "InvalidFormat",
                  "must start with the primer pack"},
        Malformed{"primerWithOddLength", primerClaiming(1, 18, 17), "InvalidLength",
                  "claims 1 entries of 18 bytes, but holds 17"},
        Malformed{"primerWithWrongItemSize", primerClaiming(1, 20, 20), "InvalidLength", "says 20"},
        Malformed{"itemPastItsSet", itemPastItsSet(), "InvalidLength",
                  "claims 40 bytes, but its set"},
        Malformed{"hugeBERLength",
                  concat({primer({}), prefaceKey, Bytes{0x88, 0x10, 0, 0, 0, 0, 0, 0, 0}}),
                  "InvalidLength", "claims 1152921504606846976 bytes"},
        Malformed{"truncatedItemHeader", concat({primer({}), klv(prefaceKey, {0x3C, 0x0A, 0x00})}),
                  "InvalidLength", "local set item header needs 4 bytes"},
        Malformed{"garbageAfterSets", concat({primer({}), Bytes{0x01, 0x02, 0x03}}),
                  "InvalidLength", "key needs 16 bytes"}),
    [](const auto& p) { return p.param.name; });

// MXFFileRefuses checks each fault of the file structure; readFile passes them on.
TEST(MalformedFile, IsRefusedWithAClearError) {
    const TempDir dir;
    const auto dictionary = Vellum::MetaMetadata::Dictionary::builtIn();
    for (const Bytes& bytes : {Bytes{}, Bytes(5000, 'x')}) {
        const std::string path = dir.write("bad.mxf", bytes);
        EXPECT_THROW_MSG_HAS(PartitionMetadata::readFile(path, "header", dictionary), InvalidFormat,
                             "not an MXF file");
    }
    EXPECT_THROW(PartitionMetadata::readFile(dir.file("missing.mxf"), "header", dictionary),
                 Vellum::Exceptions::IOError);
}

} // namespace
