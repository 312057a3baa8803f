#include "XMLBuilder/StoredBytes.h"

#include "Utils/HexText.h"
#include "XMLBuilder/MarkupSink.h"
#include "XMLBuilder/ToXMLBaseTypeVisitor.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Metadata/Element.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/SimpleDataType.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/XMLBuilder/FromXMLValueParser.h"

#include <algorithm>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

using Types::Identifiers::Identifier;

bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

// Types whose text always gives back the stored bytes, or that are written as child elements
// whose parts are exact numbers.
bool alwaysExact(Identifier type) {
    switch (type) {
    case Identifier::Int8:
    case Identifier::Int16:
    case Identifier::Int32:
    case Identifier::Int64:
    case Identifier::UInt8:
    case Identifier::UInt16:
    case Identifier::UInt32:
    case Identifier::UInt64:
    case Identifier::Length:
    case Identifier::Position:
    case Identifier::UUID:
    case Identifier::UniversalLabel:
    case Identifier::UMID32:
    case Identifier::UMID64:
    case Identifier::Rational:
    case Identifier::Timestamp:
    case Identifier::VersionType:
    case Identifier::ProductVersion:
    case Identifier::J2KPictureComponent:
    case Identifier::J2KCodingStyleDefault:
    case Identifier::J2KQuantisationDefault:
        return true;
    default:
        return false;
    }
}

// An RGBA layout writes its first five components of two bytes each.
bool rgbaBeyondFive(const std::vector<std::uint8_t>& bytes) {
    constexpr std::size_t written = 10;
    return bytes.size() > written &&
           std::any_of(bytes.begin() + written, bytes.end(), [](std::uint8_t b) { return b != 0; });
}

/// The text an element gets from the value writer: all its text nodes, at any depth.
class TextCapture final : public MarkupSink {
public:
    void startElement(std::u16string_view, std::u16string_view) override {}
    void attribute(std::u16string_view, std::u16string_view, std::u16string_view) override {}
    void text(std::u16string_view value) override { all.append(value); }
    void endElement() override {}

    WString all;
};

/// A UTF-16 string reads back as itself when it has no NUL, only characters XML holds and
/// not only blanks (an element of blanks reads as no value).
bool exactUTF16String(const Types::UTF16String& value) {
    const WString& units = value.storedUnits();
    if (units.empty() || std::all_of(units.begin(), units.end(), isBlank)) {
        return false;
    }
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char16_t c = units[i];
        if (c >= 0x20 && c < 0xD800) {
            continue;
        }
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < units.size() && units[i + 1] >= 0xDC00 &&
            units[i + 1] <= 0xDFFF) {
            ++i;
            continue;
        }
        const bool allowed = c == u'\t' || c == u'\n' || c == u'\r' || (c >= 0xE000 && c <= 0xFFFD);
        if (!allowed) {
            return false;
        }
    }
    return true;
}

/// An ISO 7 string of printable ASCII (and tab, LF, CR), not only blanks, reads back as
/// itself; nothing is known of other strings without reading them.
bool exactPrintableISO7String(const std::vector<std::uint8_t>& bytes) {
    const auto printable = [](std::uint8_t b) {
        return (b >= 0x20 && b < 0x7F) || b == '\t' || b == '\n' || b == '\r';
    };
    return !bytes.empty() && std::all_of(bytes.begin(), bytes.end(), printable) &&
           !std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t b) { return isBlank(b); });
}

} // namespace

bool StoredBytes::needed(const Types::SimpleDataType& value, Identifier type,
                         std::u16string_view localName) {
    if (value.identifier() == type) {
        if (alwaysExact(type)) {
            return false;
        }
        switch (type) {
        case Identifier::DataStream:
        case Identifier::Unknown:
            // Hexadecimal gives back any bytes, but no bytes is an empty element: no value.
            return value.serializedSize() == 0;
        case Identifier::UTF16String:
            return !exactUTF16String(static_cast<const Types::UTF16String&>(value));
        case Identifier::ISO7String:
            if (exactPrintableISO7String(value.rawBuffer())) {
                return false;
            }
            break;
        case Identifier::RGBALayout:
            return rgbaBeyondFive(value.rawBuffer());
        default:
            break;
        }
    }
    return neededByReading(value, type, localName);
}

bool StoredBytes::neededByReading(const Types::SimpleDataType& value, Identifier type,
                                  std::u16string_view localName) {
    const std::vector<std::uint8_t> stored = value.rawBuffer();
    if (value.identifier() == type && alwaysExact(type)) {
        return false;
    }
    if (value.identifier() == Identifier::RGBALayout && type == Identifier::RGBALayout) {
        return rgbaBeyondFive(stored);
    }
    TextCapture text;
    ToXMLBaseTypeVisitor writer(text);
    value.accept(writer);
    if (std::all_of(text.all.begin(), text.all.end(), isBlank)) {
        return true; // an empty element reads as no value
    }
    try {
        const auto parsed = FromXMLValueParser::parseText(text.all, type, localName);
        return !parsed || parsed->rawBuffer() != stored;
    } catch (const Exceptions::BaseException&) {
        return true;
    }
}

WString StoredBytes::emptyCollection(const Metadata::Element& collection,
                                     std::uint32_t importedItemSize) {
    DataIO::Memory::MemoryDataSink sink;
    collection.serializeValue(sink);
    const std::vector<std::uint8_t> stored(sink.rawBuffer(),
                                           sink.rawBuffer() + sink.serializedSize());
    const std::vector<std::uint8_t> imported = {0,
                                                0,
                                                0,
                                                0,
                                                static_cast<std::uint8_t>(importedItemSize >> 24U),
                                                static_cast<std::uint8_t>(importedItemSize >> 16U),
                                                static_cast<std::uint8_t>(importedItemSize >> 8U),
                                                static_cast<std::uint8_t>(importedItemSize)};
    if (stored == imported) {
        return {};
    }
    return Utils::hexText(stored.data(), stored.size());
}

} // namespace Vellum::XMLBuilder
