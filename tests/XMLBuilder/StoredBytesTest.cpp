#include "XMLBuilder/StoredBytes.h"

#include "Support/PrintCase.h"

#include "Vellum/DataIO/Slice.h"
#include "Vellum/Types/Factories/ValueFactory.h"

#include <gtest/gtest.h>

#include <vector>

// When the export keeps a value's stored bytes: the shortcuts for common types give what
// reading the written text back gives.
namespace {

using namespace Vellum;
using Bytes = std::vector<std::uint8_t>;
namespace Id = Types::Identifiers;

struct StoredCase {
    const char* name;
    Id::Identifier kind; ///< the value's class
    Bytes bytes;
    Id::Identifier type; ///< what the dictionary says the element holds
    bool needed;
};

VELLUM_PRINT_CASE_NAME(StoredCase)

// clang-format off
const StoredCase storedCases[] = {
    {"UTF16String", Id::UTF16String, {0, 'a', 0xD8, 0x3D, 0xDE, 0x00}, Id::UTF16String, false},
    {"UTF16StringTerminated", Id::UTF16String, {0, 'a', 0, 0}, Id::UTF16String, true},
    {"UTF16StringEmpty", Id::UTF16String, {}, Id::UTF16String, true},
    {"UTF16StringBlank", Id::UTF16String, {0, ' ', 0, '\n'}, Id::UTF16String, true},
    {"UTF16StringControl", Id::UTF16String, {0, 'a', 0, 1}, Id::UTF16String, true},
    {"UTF16StringLoneSurrogate", Id::UTF16String, {0xDC, 0x00}, Id::UTF16String, true},
    {"UTF16StringFFFE", Id::UTF16String, {0xFF, 0xFE}, Id::UTF16String, true},
    {"UTF16StringPrivateUse", Id::UTF16String, {0xE0, 0x00, 0, '\t'}, Id::UTF16String, false},
    {"ISO7String", Id::ISO7String, {'L', 'a', 'v', 'f'}, Id::ISO7String, false},
    {"ISO7StringPadded", Id::ISO7String, {'L', 0}, Id::ISO7String, true},
    {"ISO7StringUTF8", Id::ISO7String, {0xC3, 0xA9}, Id::ISO7String, false},
    {"ISO7StringNotUTF8", Id::ISO7String, {0xE9}, Id::ISO7String, true},
    {"ISO7StringBlank", Id::ISO7String, {' '}, Id::ISO7String, true},
    {"DataStream", Id::DataStream, {0xAB}, Id::DataStream, false},
    {"DataStreamEmpty", Id::DataStream, {}, Id::DataStream, true},
    {"Unknown", Id::Unknown, {1, 2}, Id::Unknown, false},
    {"UnknownEmpty", Id::Unknown, {}, Id::Unknown, true},
    {"BooleanOne", Id::Boolean, {1}, Id::Boolean, false},
    {"BooleanOther", Id::Boolean, {0x4D}, Id::Boolean, true},
    {"RGBALayoutOfFive", Id::RGBALayout, Bytes(16, 0), Id::RGBALayout, false},
    {"RGBALayoutBeyondFive", Id::RGBALayout, {'R', 8, 0, 0, 0, 0, 0, 0, 0, 0, 'A', 8, 0, 0, 0, 0}, Id::RGBALayout, true},
    {"UInt16", Id::UInt16, {1, 2}, Id::UInt16, false},
    {"SignalStandard", Id::SignalStandard, {4}, Id::SignalStandard, false},
    {"UTF16StringAsUInt32", Id::UTF16String, {0, '7'}, Id::UInt32, true},
    {"UnknownAsRational", Id::Unknown, Bytes(8, 1), Id::Rational, true},
    {"UnknownAsFloat", Id::Unknown, Bytes(4, 1), Id::Float, true},
};
// clang-format on

class StoredBytesRule : public ::testing::TestWithParam<StoredCase> {};

TEST_P(StoredBytesRule, ShortcutsAgreeWithReadingTheTextBack) {
    const StoredCase& c = GetParam();
    const auto value = Types::Factories::ValueFactory::create(
        c.kind, DataIO::Slice(c.bytes.data(), c.bytes.size()));
    EXPECT_EQ(XMLBuilder::StoredBytes::needed(*value, c.type, u"V"), c.needed);
    EXPECT_EQ(XMLBuilder::StoredBytes::neededByReading(*value, c.type, u"V"), c.needed);
}

INSTANTIATE_TEST_SUITE_P(Values, StoredBytesRule, ::testing::ValuesIn(storedCases),
                         [](const auto& p) { return std::string(p.param.name); });

} // namespace
