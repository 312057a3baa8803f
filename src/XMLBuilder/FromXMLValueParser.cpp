#include "Vellum/XMLBuilder/FromXMLValueParser.h"

#include "Utils/HexText.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/KLV/Value.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/Int16.h"
#include "Vellum/Types/Int32.h"
#include "Vellum/Types/Int64.h"
#include "Vellum/Types/Int8.h"
#include "Vellum/Types/J2KCodingStyleDefault.h"
#include "Vellum/Types/J2KPictureComponent.h"
#include "Vellum/Types/J2KQuantisationDefault.h"
#include "Vellum/Types/Length.h"
#include "Vellum/Types/Orientation.h"
#include "Vellum/Types/Position.h"
#include "Vellum/Types/ProductVersion.h"
#include "Vellum/Types/RGBALayout.h"
#include "Vellum/Types/Rational.h"
#include "Vellum/Types/SignalStandard.h"
#include "Vellum/Types/Timestamp.h"
#include "Vellum/Types/UInt16.h"
#include "Vellum/Types/UInt32.h"
#include "Vellum/Types/UInt64.h"
#include "Vellum/Types/UInt8.h"
#include "Vellum/Types/UMID32.h"
#include "Vellum/Types/UMID64.h"
#include "Vellum/Types/UTF16.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/Types/Unknown.h"
#include "Vellum/Types/VersionType.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/NodeSelector.h"

#include <array>
#include <memory>
#include <string>

namespace Vellum::XMLBuilder {
namespace {

using Types::Identifiers::Identifier;
using ValuePtr = Templates::auto_ptr<Types::SimpleDataType>;

const WString& typesPrefix() {
    static const WString prefix(Vocabulary::typesPrefix);
    return prefix;
}

const WString& j2kPrefix() {
    static const WString prefix(Vocabulary::s422mTypesPrefix);
    return prefix;
}

/// A basic UMID's text (32 bytes) is padded to an extended one by 32 zero bytes when it is
/// the value of this element.
constexpr const char16_t* extendedClipID = u"ExtendedClipID";
constexpr std::size_t basicUMIDTextLength = 95;
constexpr const char16_t* zeroSourcePack = u".00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00"
                                           u".00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00";

bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r';
}

/// The child elements of one compound value, with the prefix of its parts resolved once
/// where the value is (an unbound prefix throws here). Without an element (a value written
/// as an attribute) it has no parts.
class Parts {
public:
    Parts(const XMLNode* element, const WString& prefix)
        : m_element(element)
        , m_namespace(element != nullptr ? &NodeSelector::selectedNamespace(*element, prefix)
                                         : nullptr) {}

    /// The first part named `localName`, or nullptr.
    const XMLNode* find(std::u16string_view localName) const noexcept {
        return m_element != nullptr ? NodeSelector::firstNamed(*m_element, *m_namespace, localName)
                                    : nullptr;
    }
    /// The text of the first part named `localName`, empty when there is none.
    std::u16string_view text(std::u16string_view localName) const noexcept {
        const XMLNode* part = find(localName);
        return part != nullptr ? part->text() : std::u16string_view();
    }
    /// Every part named `localName`, in document order.
    std::vector<const XMLNode*> all(std::u16string_view localName) const {
        std::vector<const XMLNode*> found;
        if (m_element != nullptr) {
            for (const XMLNode& child : m_element->children()) {
                if (NodeSelector::isNamed(child, *m_namespace, localName)) {
                    found.push_back(&child);
                }
            }
        }
        return found;
    }

private:
    const XMLNode* m_element;
    const WString* m_namespace;
};

/// The text of the part `name`; throws InvalidFormat "<assertion>: <message>" at `line` when
/// it is missing or empty.
std::u16string_view requiredPart(const Parts& parts, const char16_t* name, const char* assertion,
                                 const char* message, unsigned line) {
    const std::u16string_view value = parts.text(name);
    if (value.empty()) {
        throw Exceptions::InvalidFormat(std::string(assertion) + ": " + message,
                                        FromXMLValueParser::sourceName, line);
    }
    return value;
}

/// The wrapping child of a JPEG 2000 value; throws the assertion messages at `line` when it is
/// missing and at `line + 1` when its local name is another (a check kept for the message: a
/// child found by namespace and name always passes it).
const XMLNode& j2kComponent(const XMLNode* element, const WString& name, const char* message,
                            unsigned line) {
    const XMLNode* component = Parts(element, j2kPrefix()).find(name);
    if (component == nullptr) {
        throw Exceptions::InvalidFormat(std::string("domComponentElement != 0: ") + message,
                                        FromXMLValueParser::sourceName, line);
    }
    if (name != component->localName()) {
        throw Exceptions::InvalidFormat("retrieveNodeName (domComponentElement) == L\"" +
                                            Utils::wstringToString(name) + "\": " + message,
                                        FromXMLValueParser::sourceName, line + 1);
    }
    return *component;
}

template <class T>
T cut(std::u16string_view text) {
    return static_cast<T>(FromXMLValueParser::readDecimal(text));
}

ValuePtr parsePictureComponent(const XMLNode* element) {
    const char* message = "No 'J2KPictureComponent' element from 'PictureComponentSizing' in XML "
                          "metadata";
    const Parts parts(&j2kComponent(element, u"J2KPictureComponent", message, 255), j2kPrefix());
    const std::u16string_view sSiziValue = requiredPart(parts, u"Ssizi", "!sSiziValue.empty ()",
                                                        "No 'Ssizi' element in XML metadata", 259);
    const std::u16string_view xRSiziValue = requiredPart(
        parts, u"XRSizi", "!xRSiziValue.empty ()", "No 'XRSizi' element in XML metadata", 262);
    const std::u16string_view yRSiziValue = requiredPart(
        parts, u"YRSizi", "!yRSiziValue.empty ()", "No 'YRSizi' element in XML metadata", 265);
    return std::make_unique<Types::J2KPictureComponent>(cut<std::uint8_t>(sSiziValue),
                                                        cut<std::uint8_t>(xRSiziValue),
                                                        cut<std::uint8_t>(yRSiziValue));
}

ValuePtr parseCodingStyle(const XMLNode* element) {
    const char* message = "No 'J2KCodingStyleDefault' element from 'CodingStyleDefault' in XML "
                          "metadata";
    const Parts parts(&j2kComponent(element, u"J2KCodingStyleDefault", message, 296), j2kPrefix());
    const std::u16string_view scodValue = requiredPart(parts, u"Scod", "!scodValue.empty ()",
                                                       "No 'Scod' element in XML metadata", 300);
    const std::u16string_view sGcodValue = requiredPart(parts, u"SGcod", "!sGcodValue.empty ()",
                                                        "No 'SGcod' element in XML metadata", 303);
    const std::u16string_view spcodValue = requiredPart(parts, u"Spcod", "!spcodValue.empty ()",
                                                        "No 'Spcod' element in XML metadata", 306);
    const std::vector<std::uint8_t> spcod = FromXMLValueParser::readHex(spcodValue);
    return std::make_unique<Types::J2KCodingStyleDefault>(
        cut<std::uint8_t>(scodValue), cut<std::uint32_t>(sGcodValue), spcod.data(), spcod.size());
}

ValuePtr parseQuantisation(const XMLNode* element) {
    const char* message = "No 'J2KQuantisationDefault' element from 'QuantisationDefault' in XML "
                          "metadata";
    const Parts parts(&j2kComponent(element, u"J2KQuantisationDefault", message, 337), j2kPrefix());
    const std::u16string_view sqcdValue = requiredPart(parts, u"Sqcd", "!sqcdValue.empty ()",
                                                       "No 'Sqcd' element in XML metadata", 341);
    const std::u16string_view sPgcdValue = requiredPart(parts, u"SPgcd", "!sPgcdValue.empty ()",
                                                        "No 'SPgcd' element in XML metadata", 344);
    const std::vector<std::uint8_t> sPgcd = FromXMLValueParser::readHex(sPgcdValue);
    return std::make_unique<Types::J2KQuantisationDefault>(cut<std::uint8_t>(sqcdValue),
                                                           sPgcd.data(), sPgcd.size());
}

/// The decimal values of the parts `names`, in order; false when one is missing or empty.
template <std::size_t N>
bool readParts(const XMLNode* element, const char16_t* const (&names)[N],
               std::array<std::uint64_t, N>& out) {
    const Parts parts(element, typesPrefix());
    for (std::size_t i = 0; i < N; ++i) {
        const std::u16string_view text = parts.text(names[i]);
        if (text.empty()) {
            return false;
        }
        out[i] = FromXMLValueParser::readDecimal(text);
    }
    return true;
}

ValuePtr parseRational(const XMLNode* element) {
    static const char16_t* const names[] = {u"Numerator", u"Denominator"};
    std::array<std::uint64_t, 2> parts{};
    if (!readParts(element, names, parts)) {
        return nullptr;
    }
    return std::make_unique<Types::Rational>(
        static_cast<std::int32_t>(static_cast<std::uint32_t>(parts[0])),
        static_cast<std::int32_t>(static_cast<std::uint32_t>(parts[1])));
}

ValuePtr parseProductVersion(const XMLNode* element) {
    static const char16_t* const names[] = {u"Major", u"Minor", u"Patch", u"Build", u"Release"};
    std::array<std::uint64_t, 5> parts{};
    if (!readParts(element, names, parts)) {
        return nullptr;
    }
    return std::make_unique<Types::ProductVersion>(
        static_cast<std::uint16_t>(parts[0]), static_cast<std::uint16_t>(parts[1]),
        static_cast<std::uint16_t>(parts[2]), static_cast<std::uint16_t>(parts[3]),
        static_cast<Types::ProductVersion::ReleaseVersion>(static_cast<std::uint16_t>(parts[4])));
}

ValuePtr parseRGBALayout(const XMLNode* element) {
    auto layout = std::make_unique<Types::RGBALayout>();
    std::size_t index = 0;
    for (const XMLNode* component : Parts(element, typesPrefix()).all(u"RGBAComponent")) {
        const Parts fields(component, typesPrefix());
        Types::RGBALayout::RGBAComponent value;
        value.code = cut<std::uint8_t>(fields.text(u"Code"));
        value.depth = cut<std::uint8_t>(fields.text(u"Depth"));
        layout->set(index++, value);
    }
    return layout;
}

/// Timestamp parts in the order they are fetched; the first missing one is reported.
struct TimestampPart {
    const char16_t* name;
    const char* assertion;
    const char* message;
    unsigned line;
};

constexpr TimestampPart timestampParts[] = {
    {u"Second", "!secondsValue.empty ()", "No 'Second' element in XML metadata", 374},
    {u"mSec4", "!milliValue.empty ()", "No 'mSec4' element in XML metadata", 377},
    {u"Year", "!yearValue.empty ()", "No 'Year' element in XML metadata", 380},
    {u"Month", "!monthValue.empty ()", "No 'Month' element in XML metadata", 383},
    {u"Day", "!dayValue.empty ()", "No 'Day' element in XML metadata", 386},
    {u"Hour", "!hourValue.empty ()", "No 'Hour' element in XML metadata", 389},
    {u"Minute", "!minutesValue.empty ()", "No 'Minute' element in XML metadata", 392},
};

ValuePtr parseTimestamp(const XMLNode* element) {
    const Parts parts(element, typesPrefix());
    std::array<std::uint32_t, 7> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const TimestampPart& part = timestampParts[i];
        values[i] = cut<std::uint32_t>(
            requiredPart(parts, part.name, part.assertion, part.message, part.line));
    }
    // The document counts 4-millisecond units; the value class takes milliseconds.
    const auto milliseconds = static_cast<std::uint16_t>(values[1] * 4U);
    return std::make_unique<Types::Timestamp>(
        static_cast<std::uint16_t>(values[2]), static_cast<std::uint8_t>(values[3]),
        static_cast<std::uint8_t>(values[4]), static_cast<std::uint8_t>(values[5]),
        static_cast<std::uint8_t>(values[6]), static_cast<std::uint8_t>(values[0]), milliseconds);
}

/// Values whose parts are child elements.
ValuePtr parseCompound(const XMLNode* element, Identifier type) {
    switch (type) {
    case Identifier::ProductVersion:
        return parseProductVersion(element);
    case Identifier::Rational:
        return parseRational(element);
    case Identifier::Timestamp:
        return parseTimestamp(element);
    case Identifier::RGBALayout:
        return parseRGBALayout(element);
    case Identifier::J2KPictureComponent:
        return parsePictureComponent(element);
    case Identifier::J2KCodingStyleDefault:
        return parseCodingStyle(element);
    case Identifier::J2KQuantisationDefault:
        return parseQuantisation(element);
    default:
        return nullptr;
    }
}

ValuePtr parseUTF16(std::u16string_view text) {
    for (const char16_t c : text) {
        if (!isBlank(c)) {
            return std::make_unique<Types::UTF16>(c);
        }
    }
    return nullptr;
}

ValuePtr parseUMID64(std::u16string_view localName, std::u16string_view text) {
    if (text.size() == basicUMIDTextLength && localName == extendedClipID) {
        return std::make_unique<Types::UMID64>(WString(text) + zeroSourcePack, Types::DottedHex);
    }
    return std::make_unique<Types::UMID64>(WString(text), Types::DottedHex);
}

/// Numbers, kept at their width.
ValuePtr parseNumber(std::u16string_view text, Identifier type) {
    const std::uint64_t bits = FromXMLValueParser::readDecimal(text);
    switch (type) {
    case Identifier::Int8:
        return std::make_unique<Types::Int8>(static_cast<std::int8_t>(bits));
    case Identifier::Int16:
        return std::make_unique<Types::Int16>(static_cast<std::int16_t>(bits));
    case Identifier::Int32:
        return std::make_unique<Types::Int32>(static_cast<std::int32_t>(bits));
    case Identifier::Int64:
        return std::make_unique<Types::Int64>(static_cast<std::int64_t>(bits));
    case Identifier::Length:
        return std::make_unique<Types::Length>(static_cast<std::int64_t>(bits));
    case Identifier::Position:
        return std::make_unique<Types::Position>(static_cast<std::int64_t>(bits));
    case Identifier::UInt8:
        return std::make_unique<Types::UInt8>(static_cast<std::uint8_t>(bits));
    case Identifier::UInt16:
        return std::make_unique<Types::UInt16>(static_cast<std::uint16_t>(bits));
    case Identifier::UInt32:
        return std::make_unique<Types::UInt32>(static_cast<std::uint32_t>(bits));
    case Identifier::UInt64:
        return std::make_unique<Types::UInt64>(bits);
    case Identifier::Orientation:
        return std::make_unique<Types::Orientation>(static_cast<std::uint8_t>(bits));
    case Identifier::SignalStandard:
        return std::make_unique<Types::SignalStandard>(static_cast<std::uint8_t>(bits));
    case Identifier::VersionType: {
        const auto number = static_cast<std::uint32_t>(bits);
        return std::make_unique<Types::VersionType>(static_cast<std::uint8_t>(number >> 8U),
                                                    static_cast<std::uint8_t>(number));
    }
    default:
        return nullptr;
    }
}

/// Values written as the node's text.
ValuePtr parseTextForm(std::u16string_view localName, std::u16string_view text, Identifier type) {
    switch (type) {
    case Identifier::Boolean:
        return std::make_unique<Types::Boolean>(text != u"0");
    case Identifier::DataStream:
        return std::make_unique<Types::DataStream>(FromXMLValueParser::readHex(text));
    case Identifier::Unknown:
        return std::make_unique<Types::Unknown>(FromXMLValueParser::readHex(text));
    case Identifier::ISO7String:
        return std::make_unique<Types::ISO7String>(Utils::wstringToString(text));
    case Identifier::UTF16String:
        return std::make_unique<Types::UTF16String>(WString(text));
    case Identifier::UTF16:
        return parseUTF16(text);
    case Identifier::UMID32:
        return std::make_unique<Types::UMID32>(WString(text), Types::DottedHex);
    case Identifier::UMID64:
        return parseUMID64(localName, text);
    case Identifier::UniversalLabel:
        return std::make_unique<Types::UniversalLabel>(WString(text), Types::DottedHex);
    case Identifier::UUID:
        return std::make_unique<Types::UUID>(WString(text), Types::DottedHex);
    default:
        return parseNumber(text, type);
    }
}

bool isCompound(Identifier type) {
    return type == Identifier::ProductVersion || type == Identifier::Rational ||
           type == Identifier::Timestamp || type == Identifier::RGBALayout ||
           type == Identifier::J2KPictureComponent || type == Identifier::J2KCodingStyleDefault ||
           type == Identifier::J2KQuantisationDefault;
}

} // namespace

ValuePtr FromXMLValueParser::parse(const XMLNode& element, Identifier type) {
    if (element.isEmpty()) {
        return nullptr;
    }
    if (isCompound(type)) {
        return parseCompound(&element, type);
    }
    return parseTextForm(element.localName(), element.text(), type);
}

ValuePtr FromXMLValueParser::parse(const XMLAttribute& attribute, Identifier type) {
    return parseText(attribute.value, type, attribute.name->localName);
}

ValuePtr FromXMLValueParser::parseText(std::u16string_view text, Identifier type,
                                       std::u16string_view localName) {
    if (isCompound(type)) {
        return parseCompound(nullptr, type);
    }
    return parseTextForm(localName, text, type);
}

std::vector<std::uint8_t> FromXMLValueParser::readHex(std::u16string_view text) {
    if (text.size() % 2 != 0) {
        throw Exceptions::InvalidFormat(std::string("Value has invalid Length"), sourceName, 110);
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int high = Utils::hexDigitValue(text[i]);
        const int low = Utils::hexDigitValue(text[i + 1]);
        if (high < 0 || low < 0) {
            throw Exceptions::InvalidFormat(
                std::string("Value contains non Hexadecimal characters"), sourceName, 117);
        }
        bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    return bytes;
}

std::uint64_t FromXMLValueParser::readDecimal(std::u16string_view text) noexcept {
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i])) {
        ++i;
    }
    bool negative = false;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-')) {
        negative = text[i] == u'-';
        ++i;
    }
    std::uint64_t value = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        value = value * 10U + static_cast<std::uint64_t>(text[i] - u'0');
    }
    return negative ? ~value + 1U : value;
}

WString FromXMLValueParser::readChildText(const XMLNode& parent, std::u16string_view prefix,
                                          std::u16string_view localName) {
    const XMLNode* child = NodeSelector::firstChild(parent, prefix, localName);
    return child != nullptr ? WString(child->text()) : WString();
}

} // namespace Vellum::XMLBuilder
