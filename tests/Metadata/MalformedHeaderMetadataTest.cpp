#include "Metadata/HeaderMetadataBytes.h"
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
    bool lengthError; // InvalidLength, else InvalidFormat
    const char* messagePart;
};

class MalformedHeaderMetadata : public ::testing::TestWithParam<Malformed> {};

TEST_P(MalformedHeaderMetadata, IsRefusedNamingWhereAndWhat) {
    const auto& c = GetParam();
    try {
        PartitionMetadata::read({c.bytes.data(), c.bytes.size()}, 1000,
                                Vellum::MetaMetadata::Dictionary::builtIn());
        FAIL() << "accepted";
    } catch (const Vellum::Exceptions::BaseException& e) {
        EXPECT_EQ(dynamic_cast<const Vellum::Exceptions::InvalidLength*>(&e) != nullptr,
                  c.lengthError)
            << e.utf8Message();
        EXPECT_NE(e.utf8Message().find(c.messagePart), std::string::npos) << e.utf8Message();
    }
}

Bytes primerWithOddLength() {
    Bytes value;
    put(value, 1, 4);
    put(value, 18, 4);
    value.insert(value.end(), 17, 0x01); // one entry needs 18 bytes
    return klv(primerKey, value);
}

Bytes primerWithWrongItemSize() {
    Bytes value;
    put(value, 1, 4);
    put(value, 20, 4);
    value.insert(value.end(), 20, 0x01);
    return klv(primerKey, value);
}

Bytes itemPastItsSet() {
    Bytes items = item(0x3C0A, uuid(0xAA));
    items[3] = 40; // claims 40 bytes, 16 follow
    return concat({primer({}), klv(prefaceKey, items)});
}

Bytes hugeBERLength() {
    Bytes b = primer({});
    append(b, prefaceKey);
    append(b, {0x88, 0x10, 0, 0, 0, 0, 0, 0, 0});
    return b;
}

Bytes truncatedItemHeader() {
    return concat({primer({}), klv(prefaceKey, {0x3C, 0x0A, 0x00})});
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, MalformedHeaderMetadata,
    ::testing::Values(
        Malformed{
            "empty", {}, false, "must start with the primer pack; found nothing at offset 1000"},
        Malformed{"noPrimer", klv(prefaceKey, {}), false, "must start with the primer pack"},
        Malformed{"primerWithOddLength", primerWithOddLength(), true,
                  "claims 1 entries of 18 bytes, but holds 17"},
        Malformed{"primerWithWrongItemSize", primerWithWrongItemSize(), true, "says 20"},
        Malformed{"itemPastItsSet", itemPastItsSet(), true, "claims 40 bytes, but its set"},
        Malformed{"hugeBERLength", hugeBERLength(), true, "claims 1152921504606846976 bytes"},
        Malformed{"truncatedItemHeader", truncatedItemHeader(), true,
                  "local set item header needs 4 bytes"},
        Malformed{"garbageAfterSets", concat({primer({}), Bytes{0x01, 0x02, 0x03}}), true,
                  "key needs 16 bytes"}),
    [](const auto& p) { return p.param.name; });

struct BadFile {
    const char* name;
    Bytes bytes;
    const char* messagePart;
};

class MalformedFile : public ::testing::TestWithParam<BadFile> {};

TEST_P(MalformedFile, IsRefusedWithAClearError) {
    TempDir dir;
    const std::string path = dir.write("bad.mxf", GetParam().bytes);
    try {
        PartitionMetadata::readFile(path, "header", Vellum::MetaMetadata::Dictionary::builtIn());
        FAIL() << "accepted";
    } catch (const Vellum::Exceptions::BaseException& e) {
        EXPECT_NE(e.utf8Message().find(GetParam().messagePart), std::string::npos)
            << e.utf8Message();
    }
}

Bytes truncatedPartitionPack() {
    Bytes b = klv(partitionKey(2, 4), partitionValue(0, 0, 0, 100));
    b.resize(50);
    return b;
}

INSTANTIATE_TEST_SUITE_P(Files, MalformedFile,
                         ::testing::Values(BadFile{"zeroLength", {}, "not an MXF file"},
                                           BadFile{"notMXF", Bytes(5000, 'x'), "not an MXF file"},
                                           BadFile{"truncatedPartitionPack",
                                                   truncatedPartitionPack(),
                                                   "claims 88 bytes, but only 30 remain"}),
                         [](const auto& p) { return p.param.name; });

TEST(MalformedFile, MissingFileIsAnIOError) {
    EXPECT_THROW(PartitionMetadata::readFile("/no/such/file.mxf", "header",
                                             Vellum::MetaMetadata::Dictionary::builtIn()),
                 Vellum::Exceptions::IOError);
}

} // namespace
