#include "Vellum/Types/IdentifierValue.h"

#include "Support/ExpectThrow.h"
#include "Support/PrintCase.h"
#include "TypesTestSupport.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/UMID32.h"
#include "Vellum/Types/UMID64.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/Types/WeakReference.h"
#include "Vellum/Utils/StringConversion.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using namespace VellumTypesTest;
using Vellum::WString;
using Vellum::Exceptions::InvalidFormat;
using Vellum::Exceptions::InvalidLength;
using Vellum::Types::DottedHex;
namespace T = Vellum::Types;

// The dotted text of `count` bytes counting up from `first`.
WString dotted(std::size_t count, std::uint8_t first) {
    const Bytes bytes = counting(count, first);
    return Vellum::Types::StringRepresentation::format(bytes.data(), bytes.size());
}

// Parses `text` as the named kind and prints it again.
struct TextKind {
    const char* name;
    std::size_t textLength;
    std::function<WString(const WString&)> roundTrip;
};
VELLUM_PRINT_CASE_NAME(TextKind)

// Text to value and back, for the types read and written as dotted hex.
template <class Value>
WString viaDottedHex(const WString& text) {
    return Value(text, DottedHex).toString(DottedHex);
}

// Text to value and back, for the types with one text form.
template <class Value>
WString viaText(const WString& text) {
    return Value(text).toString();
}

std::vector<TextKind> textKinds() {
    return {
        {"UUID", 47, viaDottedHex<T::UUID>},
        {"UniversalLabel", 47, viaDottedHex<T::UniversalLabel>},
        {"UMID32", 95, viaDottedHex<T::UMID32>},
        {"UMID64", 191, viaDottedHex<T::UMID64>},
        {"LocalTag", 5,
         [](const WString& t) {
             return T::LocalTag(t, DottedHex).toString();
         }},
        {"StrongReference", 47, viaText<T::StrongReference>},
        {"WeakReference", 47, viaText<T::WeakReference>},
    };
}

class TextForms : public ::testing::TestWithParam<TextKind> {};

TEST_P(TextForms, TextSurvivesParseAndPrint) {
    const TextKind& k = GetParam();
    const WString text = dotted((k.textLength + 1) / 3, 0xA5);
    ASSERT_EQ(text.size(), k.textLength);
    EXPECT_EQ(k.roundTrip(text), text);
    WString lower = text;
    for (char16_t& c : lower) {
        c = (c >= u'A' && c <= u'F') ? static_cast<char16_t>(c - u'A' + u'a') : c;
    }
    EXPECT_EQ(k.roundTrip(lower), text) << "lower case is accepted, upper case printed";
}

TEST_P(TextForms, MalformedTextThrowsNamingItAndTheFault) {
    const TextKind& k = GetParam();
    const WString good = dotted((k.textLength + 1) / 3, 0x10);
    const auto length = [&](std::size_t n) {
        return "characters (" + std::to_string((k.textLength + 1) / 3) + " bytes as two " +
               "hexadecimal digits joined by '.'), got " + std::to_string(n);
    };
    WString noDot = good;
    noDot[2] = u'-';
    WString notHex = good;
    notHex[k.textLength - 1] = u'G';
    const std::pair<WString, std::string> cases[] = {
        {WString(), length(0)},
        {good.substr(1), length(k.textLength - 1)},
        {good + u".00", length(k.textLength + 3)},
        {noDot, "expected '.' at position 2"},
        {notHex, "non-hexadecimal digit at position " + std::to_string(k.textLength - 1)},
        {WString(good.size(), u'.'), "non-hexadecimal digit at position 0"}};
    for (const auto& [bad, reason] : cases) {
        SCOPED_TRACE(Vellum::Utils::wstringToString(bad));
        EXPECT_THROW_MSG_HAS(k.roundTrip(bad), InvalidFormat,
                             "'" + Vellum::Utils::wstringToString(bad) + "' is not a valid ");
        EXPECT_THROW_MSG_HAS(k.roundTrip(bad), InvalidFormat, reason);
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, TextForms, ::testing::ValuesIn(textKinds()),
                         [](const auto& p) { return std::string(p.param.name); });

TEST(IdentifierValue, ByteAccessIsChecked) {
    T::UUID uuid;
    uuid[15] = 0xAB;
    EXPECT_EQ(std::as_const(uuid)[15], 0xAB);
    EXPECT_EQ(uuid.toString().substr(42), u"00.AB");
    EXPECT_THROW_MSG_HAS(uuid[16] = 1, InvalidLength, "byte index 16 is outside the 16");
    const T::UMID64 umid;
    EXPECT_THROW_MSG_HAS(umid[64], InvalidLength, "64 bytes of a UMID64");
}

TEST(IdentifierValue, RawBytesMustHaveTheExactLength) {
    const Bytes bytes = counting(17, 0);
    EXPECT_EQ(T::UniversalLabel(bytes.data(), 16)[15], 15);
    EXPECT_THROW_MSG_HAS(T::UniversalLabel(bytes.data(), 17), InvalidLength,
                         "UniversalLabel has 16 bytes, not 17");
    EXPECT_THROW_MSG_HAS(T::UUID(nullptr, 16), InvalidFormat, "no bytes given for a UUID");
}

// Its text forms are checked by TextForms/LocalTag.
TEST(LocalTag, ReadsTextAndKnowsStaticTags) {
    const T::LocalTag tag(u"3C.0a", DottedHex);
    EXPECT_EQ(tag.value(), 0x3C0A);
    EXPECT_TRUE(T::LocalTag(0x7FFF).isStaticLocalTag());
    EXPECT_FALSE(T::LocalTag(0x8000).isStaticLocalTag());
    EXPECT_EQ(serialized(tag), (Bytes{0x3C, 0x0A}));
    EXPECT_TRUE(T::LocalTag(1) < T::LocalTag(2));
}

TEST(Reference, HoldsTheTargetUUID) {
    const T::UUID target(dotted(16, 0x20), DottedHex);
    const T::StrongReference strong(target);
    EXPECT_EQ(strong.uuid(), target);
    EXPECT_EQ(strong.toString(), target.toString());
    EXPECT_EQ(serialized(strong), Bytes(target.bytes().begin(), target.bytes().end()));
    EXPECT_EQ(T::WeakReference(target.toString()).uuid(), target);
}

} // namespace
