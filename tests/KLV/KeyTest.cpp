#include "Vellum/KLV/Key.h"

#include "Support/ExpectThrow.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/KLV/Value.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Vellum::WString;
using Vellum::KLV::Key;
using Vellum::Types::DottedHex;

const WString prefaceText = u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00";

TEST(Key, TextRoundTripIsUpperCaseDottedHex) {
    const Key key(prefaceText, DottedHex);
    EXPECT_EQ(key[0], 0x06);
    EXPECT_EQ(key[14], 0x2F);
    EXPECT_EQ(key.toString(), prefaceText);
    EXPECT_EQ(key.toString().size(), 47U);
    EXPECT_EQ(Key(u"06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00", DottedHex), key);
    EXPECT_EQ(Key().toString(), u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00");
    EXPECT_THROW_MSG(Key(u"06.0E", DottedHex), InvalidFormat,
                     "'06.0E' is not a valid key: expected 47 characters (16 bytes as two "
                     "hexadecimal digits joined by '.'), got 5");
}

TEST(Key, VersionByteCanBeIgnored) {
    const Key v1(u"06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00", DottedHex);
    const Key v5(u"06.0E.2B.34.01.01.01.05.01.01.15.02.00.00.00.00", DottedHex);
    EXPECT_NE(v1, v5);
    EXPECT_TRUE(v1.equalsIgnoringVersion(v5));
    const Key other(u"06.0E.2B.34.01.01.01.01.01.01.15.03.00.00.00.00", DottedHex);
    EXPECT_FALSE(v1.equalsIgnoringVersion(other));
    EXPECT_EQ(v5.withoutVersion(),
              Key(u"06.0E.2B.34.01.01.01.00.01.01.15.02.00.00.00.00", DottedHex));
    EXPECT_EQ(v1.withoutVersion(), v5.withoutVersion());
    EXPECT_NE(v1.withoutVersion(), other.withoutVersion());
}

TEST(Key, BytesRoundTripAndShortInputs) {
    const Key key(prefaceText, DottedHex);
    Vellum::DataIO::Memory::MemoryDataSink sink;
    key.serialize(sink);
    Vellum::DataIO::Memory::MemoryDataSource source(sink.rawBuffer(), sink.serializedSize());
    EXPECT_EQ(Key::read(source), key);
    Vellum::DataIO::Memory::MemoryDataSource shortSource(sink.rawBuffer(), 15);
    EXPECT_THROW(Key::read(shortSource), Vellum::Exceptions::InvalidLength);
    EXPECT_THROW(Key(sink.rawBuffer(), 15), Vellum::Exceptions::InvalidLength);
}

TEST(Value, ChecksTheCountBeforeAllocating) {
    const std::vector<std::uint8_t> bytes = {1, 2, 3};
    Vellum::DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    EXPECT_THROW(Vellum::KLV::Value(source, std::uint64_t{1} << 60),
                 Vellum::Exceptions::InvalidLength);
    const Vellum::KLV::Value value(source, 3);
    EXPECT_EQ(value.bytes(), bytes);
    EXPECT_EQ(value.slice().size(), 3U);
}

} // namespace
