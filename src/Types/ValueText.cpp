#include "Vellum/Types/ValueText.h"

#include "Utils/HexText.h"

#include "Vellum/Types/Array.h"
#include "Vellum/Types/Batch.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/DataStream.h"
#include "Vellum/Types/DataValue.h"
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
#include "Vellum/Types/WeakReference.h"
#include "Vellum/Utils/StringConversion.h"

#include <string>

namespace Vellum::Types {
namespace {

WString widen(const std::string& ascii) {
    return WString(ascii.begin(), ascii.end());
}

// `value` in decimal, at least `width` digits.
WString padded(unsigned value, std::size_t width) {
    WString text = widen(std::to_string(value));
    return text.size() < width ? WString(width - text.size(), u'0') + text : text;
}

bool isHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}

bool isLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// Whether the unit at `index` is a surrogate that is not part of a pair.
bool isLoneSurrogate(const WString& text, std::size_t index) {
    const char16_t c = text[index];
    if (isHighSurrogate(c)) {
        return index + 1 == text.size() || !isLowSurrogate(text[index + 1]);
    }
    if (isLowSurrogate(c)) {
        return index == 0 || !isHighSurrogate(text[index - 1]);
    }
    return false;
}

} // namespace

ValueText::~ValueText() = default;

WString ValueText::format(const BaseType& value) {
    ValueText text;
    value.accept(text);
    return text.m_text;
}

WString ValueText::hex(const std::uint8_t* bytes, std::size_t count) {
    return Utils::hexText(bytes, count);
}

void ValueText::appendDecimal(long long value) {
    m_text += widen(std::to_string(value));
}

void ValueText::appendUnsigned(unsigned long long value) {
    m_text += widen(std::to_string(value));
}

void ValueText::appendQuoted(const WString& text) {
    m_text += u'"';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'"' || c == u'\\') {
            m_text += u'\\';
            m_text += c;
        } else if (c < 0x20 || c == 0x7F) {
            m_text += u"\\x";
            Utils::appendHexByte(m_text, static_cast<std::uint8_t>(c));
        } else if (isLoneSurrogate(text, i)) {
            // Shown as its code, since no character stands for it.
            m_text += u"\\u";
            for (unsigned shift = 16; shift != 0; shift -= 4) {
                m_text += Utils::hexDigit(c >> (shift - 4));
            }
        } else {
            m_text += c;
        }
    }
    m_text += u'"';
}

void ValueText::appendHex(const std::vector<std::uint8_t>& bytes) {
    m_text += hex(bytes.data(), bytes.size());
}

void ValueText::appendItems(const Collection& items) {
    m_text += u'[';
    for (std::uint32_t i = 0; i < items.size(); ++i) {
        if (i != 0) {
            m_text += u", ";
        }
        items.at(i).accept(*this);
    }
    m_text += u']';
}

void ValueText::visit(const J2KQuantisationDefault& value) {
    m_text += u"Sqcd=";
    appendUnsigned(value.sqcd());
    m_text += u" SPgcd=";
    appendHex(value.sPgcd().rawBuffer());
}

void ValueText::visit(const J2KCodingStyleDefault& value) {
    m_text += u"Scod=";
    appendUnsigned(value.scod());
    m_text += u" SGcod=";
    appendUnsigned(value.sGcod());
    m_text += u" SPcod=";
    appendHex(value.spcod().rawBuffer());
}

void ValueText::visit(const J2KPictureComponent& value) {
    m_text += u"Ssiz=";
    appendUnsigned(value.sSizi());
    m_text += u" XRsiz=";
    appendUnsigned(value.xRSizi());
    m_text += u" YRsiz=";
    appendUnsigned(value.yRSizi());
}

void ValueText::visit(const DataValue& value) {
    appendHex(value.rawBuffer());
}

void ValueText::visit(const StrongReference& value) {
    m_text += value.toString();
}

void ValueText::visit(const WeakReference& value) {
    m_text += value.toString();
}

void ValueText::visit(const Unknown& value) {
    appendHex(value.rawBuffer());
}

void ValueText::visit(const VersionType& value) {
    appendUnsigned(unsigned{value.major()} * 256U + value.minor());
}

void ValueText::visit(const UUID& value) {
    m_text += value.toString();
}

void ValueText::visit(const UTF16String& value) {
    appendQuoted(value.value());
}

void ValueText::visit(const UTF16& value) {
    appendQuoted(WString(1, value.value()));
}

void ValueText::visit(const UniversalLabel& value) {
    m_text += value.toString();
}

void ValueText::visit(const UMID64& value) {
    m_text += value.toString();
}

void ValueText::visit(const UMID32& value) {
    m_text += value.toString();
}

void ValueText::visit(const UInt8& value) {
    appendUnsigned(value.value());
}

void ValueText::visit(const UInt64& value) {
    appendUnsigned(value.value());
}

void ValueText::visit(const UInt32& value) {
    appendUnsigned(value.value());
}

void ValueText::visit(const UInt16& value) {
    appendUnsigned(value.value());
}

void ValueText::visit(const Timestamp& value) {
    m_text += padded(value.year(), 4) + u'-' + padded(value.month(), 2) + u'-' +
              padded(value.day(), 2) + u' ' + padded(value.hour(), 2) + u':' +
              padded(value.minute(), 2) + u':' + padded(value.second(), 2) + u'.' +
              padded(unsigned{value.milliSecond()} * 4U, 3);
}

void ValueText::visit(const SignalStandard& value) {
    appendUnsigned(value.value());
}

void ValueText::visit(const RGBALayout& value) {
    // The used slots, up to the last one with a code; a slot with a code that is not a
    // printable character shows the code in decimal, in parentheses.
    std::size_t used = RGBALayout::componentCount;
    while (used != 0 && value.get(used - 1).code == 0) {
        --used;
    }
    for (std::size_t i = 0; i < used; ++i) {
        const auto component = value.get(i);
        if (i != 0) {
            m_text += u' ';
        }
        if (component.code > 0x20 && component.code < 0x7F) {
            m_text += static_cast<char16_t>(component.code);
        } else {
            m_text += u'(';
            appendUnsigned(component.code);
            m_text += u')';
        }
        appendUnsigned(component.depth);
    }
}

void ValueText::visit(const Rational& value) {
    appendDecimal(value.numerator());
    m_text += u'/';
    appendDecimal(value.denominator());
}

void ValueText::visit(const ProductVersion& value) {
    appendUnsigned(value.major());
    m_text += u'.';
    appendUnsigned(value.minor());
    m_text += u'.';
    appendUnsigned(value.patch());
    m_text += u'.';
    appendUnsigned(value.build());
    m_text += u'.';
    appendUnsigned(static_cast<unsigned>(value.releaseVersion()));
}

void ValueText::visit(const Position& value) {
    appendDecimal(value.value());
}

void ValueText::visit(const Orientation& value) {
    appendUnsigned(value.value());
}

void ValueText::visit(const LocalTag& value) {
    m_text += value.toString();
}

void ValueText::visit(const Length& value) {
    appendUnsigned(value.value());
}

void ValueText::visit(const ISO7String& value) {
    appendQuoted(Utils::stringToWstring(std::string_view(value.value())));
}

void ValueText::visit(const Int8& value) {
    appendDecimal(value.value());
}

void ValueText::visit(const Int64& value) {
    appendDecimal(value.value());
}

void ValueText::visit(const Int32& value) {
    appendDecimal(value.value());
}

void ValueText::visit(const Int16& value) {
    appendDecimal(value.value());
}

void ValueText::visit(const DataStream& value) {
    appendHex(value.rawBuffer());
}

void ValueText::visit(const Boolean& value) {
    m_text += value.value() ? u'1' : u'0';
}

void ValueText::visit(const Batch& value) {
    appendItems(value);
}

void ValueText::visit(const Array& value) {
    appendItems(value);
}

} // namespace Vellum::Types
