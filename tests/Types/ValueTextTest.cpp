#include "Vellum/Types/ValueText.h"

#include "Types/TypesTestSupport.h"

#include "Vellum/Types/Collection.h"
#include "Vellum/Types/Factories/ValueFactory.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace VellumTypesTest;
using Vellum::WString;
using Vellum::Types::ValueText;
using Vellum::Types::Factories::ValueFactory;

TEST(ValueText, EveryValueTypeHasItsTextForm) {
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        const auto value =
            ValueFactory::create(sample.type, {sample.bytes.data(), sample.bytes.size()});
        EXPECT_EQ(ValueText::format(*value), sample.text);
    }
}

struct TextCase {
    const char* name;
    Id::Identifier type;
    Bytes bytes;
    WString text;
};

TEST(ValueText, EscapesAndCompoundValues) {
    const TextCase cases[] = {
        {"quote, backslash and controls",
         Id::UTF16String,
         {0, '"', 0, '\\', 0, '\n', 0, 0x7F, 0xDC, 0x00, 0xD8, 0x00},
         u"\"\\\"\\\\\\x0A\\x7F\\uDC00\\uD800\""},
        {"ISO 7 text that is not UTF-8", Id::ISO7String, {'a', 0xFF}, u"\"a\uFFFD\""},
        {"milliseconds in 4 ms steps",
         Id::Timestamp,
         {0, 0, 1, 2, 3, 4, 5, 1},
         u"0000-01-02 03:04:05.004"},
        {"RGBA slot without a printable code",
         Id::RGBALayout,
         {'R', 5, 0, 0, 0x01, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         u"R5 (0)0 (1)10"},
        {"empty RGBA layout", Id::RGBALayout, Bytes(16, 0), u""},
        {"false", Id::Boolean, {0}, u"0"},
    };
    for (const TextCase& c : cases) {
        SCOPED_TRACE(c.name);
        const auto value = ValueFactory::create(c.type, {c.bytes.data(), c.bytes.size()});
        EXPECT_EQ(ValueText::format(*value), c.text);
    }
}

TEST(ValueText, CollectionsListTheirItems) {
    const Bytes twoItems = {0, 0, 0, 2, 0, 0, 0, 2, 0x00, 0x01, 0xFF, 0xFF};
    const Bytes none = {0, 0, 0, 0, 0, 0, 0, 0};
    const auto array =
        ValueFactory::createCollection(Id::Array, Id::UInt16, {twoItems.data(), twoItems.size()});
    const auto batch =
        ValueFactory::createCollection(Id::Batch, Id::UUID, {none.data(), none.size()});
    EXPECT_EQ(ValueText::format(*array), u"[1, 65535]");
    EXPECT_EQ(ValueText::format(*batch), u"[]");
    EXPECT_EQ(ValueText::hex(twoItems.data(), 4), u"00000002");
}

} // namespace
