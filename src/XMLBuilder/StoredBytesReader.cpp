#include "XMLBuilder/StoredBytesReader.h"

#include "Utils/HexText.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/DataIO/Slice.h"
#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Types/Array.h"
#include "Vellum/Types/Batch.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/DataValue.h"
#include "Vellum/Types/Factories/ValueFactory.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/Int16.h"
#include "Vellum/Types/Int32.h"
#include "Vellum/Types/Int64.h"
#include "Vellum/Types/Int8.h"
#include "Vellum/Types/J2KCodingStyleDefault.h"
#include "Vellum/Types/J2KPictureComponent.h"
#include "Vellum/Types/J2KQuantisationDefault.h"
#include "Vellum/Types/Length.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/Orientation.h"
#include "Vellum/Types/Position.h"
#include "Vellum/Types/ProductVersion.h"
#include "Vellum/Types/RGBALayout.h"
#include "Vellum/Types/Rational.h"
#include "Vellum/Types/SignalStandard.h"
#include "Vellum/Types/StrongReference.h"
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
#include "Vellum/Types/Visitors/Visitor.h"
#include "Vellum/Types/WeakReference.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/FromXMLValueParser.h"
#include "Vellum/XMLBuilder/XMLNode.h"

#include <algorithm>
#include <string>

namespace Vellum::XMLBuilder {
namespace {

using Types::Identifiers::Identifier;

constexpr std::u16string_view storedBytesName = u"StoredBytes";

/// The number of components an RGBA layout is written with, whatever its slots hold.
constexpr std::size_t rgbaComponentsWritten = 5;

bool isBlank(std::u16string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char16_t c) {
        return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
    });
}

/// The text an element holds once the export has written a value into it: its own text and
/// that of the parts of a compound value, in document order, as the import reads it (so a
/// text of blanks only is no text).
class ExportedText : public Types::Visitors::Visitor {
public:
    /// The text of `value`.
    static WString of(const Types::SimpleDataType& value) {
        ExportedText text;
        value.accept(text);
        return isBlank(text.m_text) ? WString() : std::move(text.m_text);
    }

    void visit(const Types::J2KQuantisationDefault& value) override {
        number(unsigned{value.sqcd()});
        hex(value.sPgcd().rawBuffer());
    }
    void visit(const Types::J2KCodingStyleDefault& value) override {
        number(unsigned{value.scod()});
        number(value.sGcod());
        hex(value.spcod().rawBuffer());
    }
    void visit(const Types::J2KPictureComponent& value) override {
        number(unsigned{value.sSizi()});
        number(unsigned{value.xRSizi()});
        number(unsigned{value.yRSizi()});
    }
    void visit(const Types::DataValue& value) override { hex(value.rawBuffer()); }
    void visit(const Types::StrongReference& value) override { text(value.toString()); }
    void visit(const Types::WeakReference& value) override { text(value.toString()); }
    void visit(const Types::Unknown& value) override { hex(value.rawBuffer()); }
    void visit(const Types::VersionType& value) override {
        number(unsigned{value.major()} * 256U + value.minor());
    }
    void visit(const Types::UUID& value) override { text(value.toString()); }
    void visit(const Types::UTF16String& value) override { text(value.value()); }
    void visit(const Types::UTF16& value) override { text(WString(1, value.value())); }
    void visit(const Types::UniversalLabel& value) override { text(value.toString()); }
    void visit(const Types::UMID64& value) override { text(value.toString()); }
    void visit(const Types::UMID32& value) override { text(value.toString()); }
    void visit(const Types::UInt8& value) override { number(unsigned{value.value()}); }
    void visit(const Types::UInt64& value) override { number(value.value()); }
    void visit(const Types::UInt32& value) override { number(value.value()); }
    void visit(const Types::UInt16& value) override { number(unsigned{value.value()}); }
    void visit(const Types::Timestamp& value) override {
        for (const unsigned field :
             {unsigned{value.year()}, unsigned{value.month()}, unsigned{value.day()},
              unsigned{value.hour()}, unsigned{value.minute()}, unsigned{value.second()},
              unsigned{value.milliSecond()}}) {
            number(field);
        }
    }
    void visit(const Types::SignalStandard& value) override { number(unsigned{value.value()}); }
    void visit(const Types::RGBALayout& value) override {
        for (std::size_t i = 0; i < rgbaComponentsWritten; ++i) {
            const auto component = value.get(i);
            number(unsigned{component.code});
            number(unsigned{component.depth});
        }
    }
    void visit(const Types::Rational& value) override {
        number(value.numerator());
        number(value.denominator());
    }
    void visit(const Types::ProductVersion& value) override {
        for (const unsigned field :
             {unsigned{value.major()}, unsigned{value.minor()}, unsigned{value.patch()},
              unsigned{value.build()}, static_cast<unsigned>(value.releaseVersion())}) {
            number(field);
        }
    }
    void visit(const Types::Position& value) override { number(value.value()); }
    void visit(const Types::Orientation& value) override { number(unsigned{value.value()}); }
    void visit(const Types::LocalTag& value) override { text(value.toString()); }
    void visit(const Types::Length& value) override { number(value.value()); }
    void visit(const Types::ISO7String& value) override {
        // Written up to the first NUL, as UTF-8.
        text(Utils::stringToWstring(value.value().c_str()));
    }
    void visit(const Types::Int8& value) override { number(int{value.value()}); }
    void visit(const Types::Int64& value) override { number(value.value()); }
    void visit(const Types::Int32& value) override { number(value.value()); }
    void visit(const Types::Int16& value) override { number(int{value.value()}); }
    void visit(const Types::DataStream& value) override { hex(value.rawBuffer()); }
    void visit(const Types::Boolean& value) override { m_text += value.value() ? u'1' : u'0'; }
    void visit(const Types::Batch& value) override {
        for (std::uint32_t i = 0; i < value.size(); ++i) {
            value.at(i).accept(*this);
        }
    }
    void visit(const Types::Array& value) override {
        for (std::uint32_t i = 0; i < value.size(); ++i) {
            value.at(i).accept(*this);
        }
    }

private:
    template <class T>
    void number(T value) {
        const std::string digits = std::to_string(value);
        m_text.append(digits.begin(), digits.end());
    }

    void hex(const std::vector<std::uint8_t>& bytes) {
        for (const std::uint8_t byte : bytes) {
            Utils::appendHexByte(m_text, byte);
        }
    }

    /// Appends `text` with every character XML 1.0 cannot hold replaced by U+FFFD, as the
    /// export writes it.
    void text(const WString& value) {
        const std::size_t start = m_text.size();
        m_text += value;
        for (std::size_t i = start; i < m_text.size(); ++i) {
            const char16_t c = m_text[i];
            const bool high = c >= 0xD800 && c <= 0xDBFF;
            const bool low = c >= 0xDC00 && c <= 0xDFFF;
            if (high && i + 1 < m_text.size() && m_text[i + 1] >= 0xDC00 &&
                m_text[i + 1] <= 0xDFFF) {
                ++i;
                continue;
            }
            const bool control = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
            if (control || high || low || c == 0xFFFE || c == 0xFFFF) {
                m_text[i] = u'\xFFFD';
            }
        }
    }

    WString m_text;
};

const XMLAttribute* storedBytesOf(const XMLNode& element) noexcept {
    return element.attribute(Vocabulary::groupsNamespace, storedBytesName);
}

} // namespace

std::vector<std::uint8_t> StoredBytesReader::emptyCollection(const XMLNode& element) {
    const XMLAttribute* attribute = storedBytesOf(element);
    if (attribute == nullptr || element.firstChild() != nullptr) {
        return {};
    }
    return FromXMLValueParser::readHex(attribute->value);
}

Templates::auto_ptr<Types::SimpleDataType> StoredBytesReader::read(const XMLNode& element,
                                                                   Identifier type) {
    const XMLAttribute* attribute = storedBytesOf(element);
    if (attribute == nullptr) {
        return nullptr;
    }
    try {
        const std::vector<std::uint8_t> bytes = FromXMLValueParser::readHex(attribute->value);
        const Identifier kind =
            Types::Factories::ValueFactory::hasValueClass(type) ? type : Identifier::Unknown;
        auto value =
            Types::Factories::ValueFactory::create(kind, DataIO::Slice(bytes.data(), bytes.size()));
        // Most elements hold text only: their text is compared without being copied.
        const WString written = ExportedText::of(*value);
        bool unedited = false;
        if (element.firstChild() != nullptr) {
            unedited = written == element.textContent();
        } else {
            unedited = isBlank(element.text()) ? written.empty() : written == element.text();
        }
        return unedited ? std::move(value) : nullptr;
    } catch (const Exceptions::BaseException&) {
        return nullptr; // stored bytes that do not fit the type: the text decides
    }
}

} // namespace Vellum::XMLBuilder
