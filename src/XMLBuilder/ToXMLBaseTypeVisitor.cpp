#include "XMLBuilder/ToXMLBaseTypeVisitor.h"

#include "Utils/HexText.h"
#include "XMLBuilder/Vocabulary.h"

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
#include "Vellum/Types/Visitors/NullVisitor.h"
#include "Vellum/Types/WeakReference.h"
#include "Vellum/Utils/StringConversion.h"

#include <array>
#include <string>

namespace Vellum::XMLBuilder {
namespace {

// The fixed child names of compound values, each with its namespace.
enum Name : std::size_t {
    Denominator,
    Numerator,
    Major,
    Minor,
    Patch,
    Build,
    Release,
    Year,
    Month,
    Day,
    Hour,
    Minute,
    Second,
    MSec4,
    RGBAComponent,
    Code,
    Depth,
    J2KPictureComponent,
    Ssizi,
    XRSizi,
    YRSizi,
    J2KCodingStyleDefault,
    Scod,
    SGcod,
    Spcod,
    J2KQuantisationDefault,
    Sqcd,
    SPgcd,
    NameCount
};

struct QualifiedName {
    std::u16string_view name;
    std::u16string_view namespaceName;
};

constexpr std::u16string_view types = Vocabulary::typesNamespace;
constexpr std::u16string_view s422m = Vocabulary::s422mTypesNamespace;

constexpr std::array<QualifiedName, NameCount> names = {{
    {u"types:Denominator", types},   {u"types:Numerator", types},
    {u"types:Major", types},         {u"types:Minor", types},
    {u"types:Patch", types},         {u"types:Build", types},
    {u"types:Release", types},       {u"types:Year", types},
    {u"types:Month", types},         {u"types:Day", types},
    {u"types:Hour", types},          {u"types:Minute", types},
    {u"types:Second", types},        {u"types:mSec4", types},
    {u"types:RGBAComponent", types}, {u"types:Code", types},
    {u"types:Depth", types},         {u"s422mTypes:J2KPictureComponent", s422m},
    {u"s422mTypes:Ssizi", s422m},    {u"s422mTypes:XRSizi", s422m},
    {u"s422mTypes:YRSizi", s422m},   {u"s422mTypes:J2KCodingStyleDefault", s422m},
    {u"s422mTypes:Scod", s422m},     {u"s422mTypes:SGcod", s422m},
    {u"s422mTypes:Spcod", s422m},    {u"s422mTypes:J2KQuantisationDefault", s422m},
    {u"s422mTypes:Sqcd", s422m},     {u"s422mTypes:SPgcd", s422m},
}};

// The number of components an RGBA layout writes, whatever its slots hold.
constexpr std::size_t rgbaComponentsWritten = 5;

/// Whether XML 1.0 holds every character of `text` (tab, LF, CR, U+0020..U+D7FF,
/// U+E000..U+FFFD and paired surrogates).
bool fitsXML(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c >= 0x20 && c < 0xD800) {
            continue;
        }
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            ++i;
            continue;
        }
        const bool control = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
        if (control || (c >= 0xD800 && c <= 0xDFFF) || c == 0xFFFE || c == 0xFFFF) {
            return false;
        }
    }
    return true;
}

/// The attribute text of identifiers, into a buffer; nothing for other values.
class AttributeText : public Types::Visitors::NullVisitor {
public:
    explicit AttributeText(char16_t* buffer) noexcept
        : m_buffer(buffer) {}

    using NullVisitor::visit;
    void visit(const Types::StrongReference& value) override {
        text = Utils::writeDottedHex(value.uuid().data(), Types::UUID::byteCount, m_buffer);
    }
    void visit(const Types::WeakReference& value) override {
        text = Utils::writeDottedHex(value.uuid().data(), Types::UUID::byteCount, m_buffer);
    }
    void visit(const Types::UUID& value) override {
        text = Utils::writeDottedHex(value.data(), Types::UUID::byteCount, m_buffer);
    }
    // A label is written as an attribute too: the dictionary may type an identity element
    // (such as GenerationUID) as a label.
    void visit(const Types::UniversalLabel& value) override {
        text = Utils::writeDottedHex(value.data(), Types::UniversalLabel::byteCount, m_buffer);
    }

    std::u16string_view text;

private:
    char16_t* m_buffer;
};

} // namespace

ToXMLBaseTypeVisitor::~ToXMLBaseTypeVisitor() = default;

WString ToXMLBaseTypeVisitor::xmlCharacters(std::u16string_view text) {
    WString out(text);
    for (std::size_t i = 0; i < out.size(); ++i) {
        const char16_t c = out[i];
        const bool high = c >= 0xD800 && c <= 0xDBFF;
        const bool low = c >= 0xDC00 && c <= 0xDFFF;
        if (high && i + 1 < out.size() && out[i + 1] >= 0xDC00 && out[i + 1] <= 0xDFFF) {
            ++i;
            continue;
        }
        const bool control = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
        if (control || high || low || c == 0xFFFE || c == 0xFFFF) {
            out[i] = u'\xFFFD';
        }
    }
    return out;
}

std::u16string_view ToXMLBaseTypeVisitor::attributeText(const Types::BaseType& value,
                                                        AttributeBuffer& buffer) {
    AttributeText text(buffer.data());
    value.accept(text);
    return text.text;
}

WString ToXMLBaseTypeVisitor::attributeText(const Types::BaseType& value) {
    AttributeBuffer buffer;
    return WString(attributeText(value, buffer));
}

void ToXMLBaseTypeVisitor::text(std::u16string_view text) {
    if (fitsXML(text)) {
        m_sink.text(text);
    } else {
        m_sink.text(xmlCharacters(text));
    }
}

void ToXMLBaseTypeVisitor::decimal(std::uint64_t value, bool negative) {
    char16_t digits[21];
    std::size_t at = sizeof digits / sizeof digits[0];
    do {
        digits[--at] = static_cast<char16_t>(u'0' + value % 10U);
        value /= 10U;
    } while (value != 0);
    if (negative) {
        digits[--at] = u'-';
    }
    m_sink.text(std::u16string_view(digits + at, sizeof digits / sizeof digits[0] - at));
}

void ToXMLBaseTypeVisitor::hex(const std::vector<std::uint8_t>& bytes) {
    m_sink.text(Utils::hexText(bytes.data(), bytes.size()));
}

void ToXMLBaseTypeVisitor::identifier(const std::uint8_t* bytes, std::size_t count) {
    char16_t text[64 * 3];
    m_sink.text(Utils::writeDottedHex(bytes, count, text));
}

void ToXMLBaseTypeVisitor::start(std::size_t name) {
    m_sink.startElement(names[name].namespaceName, names[name].name);
}

void ToXMLBaseTypeVisitor::child(std::size_t name, std::uint64_t value) {
    start(name);
    decimal(value);
    m_sink.endElement();
}

namespace {

/// A signed number's magnitude and sign, for ToXMLBaseTypeVisitor::decimal.
std::uint64_t magnitude(std::int64_t value) {
    return value < 0 ? 0U - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

} // namespace

void ToXMLBaseTypeVisitor::visit(const Types::J2KQuantisationDefault& value) {
    start(J2KQuantisationDefault);
    child(Sqcd, value.sqcd());
    start(SPgcd);
    hex(value.sPgcd().rawBuffer());
    m_sink.endElement();
    m_sink.endElement();
}

void ToXMLBaseTypeVisitor::visit(const Types::J2KCodingStyleDefault& value) {
    start(J2KCodingStyleDefault);
    child(Scod, value.scod());
    child(SGcod, value.sGcod());
    start(Spcod);
    hex(value.spcod().rawBuffer());
    m_sink.endElement();
    m_sink.endElement();
}

void ToXMLBaseTypeVisitor::visit(const Types::J2KPictureComponent& value) {
    start(J2KPictureComponent);
    child(Ssizi, value.sSizi());
    child(XRSizi, value.xRSizi());
    child(YRSizi, value.yRSizi());
    m_sink.endElement();
}

void ToXMLBaseTypeVisitor::visit(const Types::DataValue& value) {
    hex(value.rawBuffer());
}

void ToXMLBaseTypeVisitor::visit(const Types::StrongReference& value) {
    identifier(value.uuid().data(), Types::UUID::byteCount);
}

void ToXMLBaseTypeVisitor::visit(const Types::WeakReference& value) {
    identifier(value.uuid().data(), Types::UUID::byteCount);
}

void ToXMLBaseTypeVisitor::visit(const Types::Unknown& value) {
    hex(value.rawBuffer());
}

void ToXMLBaseTypeVisitor::visit(const Types::VersionType& value) {
    decimal(unsigned{value.major()} * 256U + value.minor());
}

void ToXMLBaseTypeVisitor::visit(const Types::UUID& value) {
    identifier(value.data(), Types::UUID::byteCount);
}

void ToXMLBaseTypeVisitor::visit(const Types::UTF16String& value) {
    // The text up to the first NUL, as `value()` gives it.
    const std::u16string_view units(value.storedUnits());
    text(units.substr(0, units.find(u'\0')));
}

void ToXMLBaseTypeVisitor::visit(const Types::UTF16& value) {
    const char16_t unit = value.value();
    text(std::u16string_view(&unit, 1));
}

void ToXMLBaseTypeVisitor::visit(const Types::UniversalLabel& value) {
    identifier(value.data(), Types::UniversalLabel::byteCount);
}

void ToXMLBaseTypeVisitor::visit(const Types::UMID64& value) {
    identifier(value.data(), Types::UMID64::byteCount);
}

void ToXMLBaseTypeVisitor::visit(const Types::UMID32& value) {
    identifier(value.data(), Types::UMID32::byteCount);
}

void ToXMLBaseTypeVisitor::visit(const Types::UInt8& value) {
    decimal(value.value());
}

void ToXMLBaseTypeVisitor::visit(const Types::UInt64& value) {
    decimal(value.value());
}

void ToXMLBaseTypeVisitor::visit(const Types::UInt32& value) {
    decimal(value.value());
}

void ToXMLBaseTypeVisitor::visit(const Types::UInt16& value) {
    decimal(value.value());
}

void ToXMLBaseTypeVisitor::visit(const Types::Timestamp& value) {
    child(Year, value.year());
    child(Month, value.month());
    child(Day, value.day());
    child(Hour, value.hour());
    child(Minute, value.minute());
    child(Second, value.second());
    child(MSec4, value.milliSecond());
}

void ToXMLBaseTypeVisitor::visit(const Types::SignalStandard& value) {
    decimal(value.value());
}

void ToXMLBaseTypeVisitor::visit(const Types::RGBALayout& value) {
    for (std::size_t i = 0; i < rgbaComponentsWritten; ++i) {
        const auto component = value.get(i);
        start(RGBAComponent);
        child(Code, component.code);
        child(Depth, component.depth);
        m_sink.endElement();
    }
}

void ToXMLBaseTypeVisitor::visit(const Types::Rational& value) {
    start(Numerator);
    decimal(magnitude(value.numerator()), value.numerator() < 0);
    m_sink.endElement();
    start(Denominator);
    decimal(magnitude(value.denominator()), value.denominator() < 0);
    m_sink.endElement();
}

void ToXMLBaseTypeVisitor::visit(const Types::ProductVersion& value) {
    child(Major, value.major());
    child(Minor, value.minor());
    child(Patch, value.patch());
    child(Build, value.build());
    child(Release, static_cast<unsigned>(value.releaseVersion()));
}

void ToXMLBaseTypeVisitor::visit(const Types::Position& value) {
    decimal(magnitude(value.value()), value.value() < 0);
}

void ToXMLBaseTypeVisitor::visit(const Types::Orientation& value) {
    decimal(value.value());
}

void ToXMLBaseTypeVisitor::visit(const Types::LocalTag& value) {
    const std::uint8_t bytes[2] = {static_cast<std::uint8_t>(value.value() >> 8U),
                                   static_cast<std::uint8_t>(value.value() & 0xFFU)};
    identifier(bytes, 2);
}

void ToXMLBaseTypeVisitor::visit(const Types::Length& value) {
    decimal(magnitude(value.value()), value.value() < 0);
}

void ToXMLBaseTypeVisitor::visit(const Types::ISO7String& value) {
    text(Utils::stringToWstring(value.value().c_str()));
}

void ToXMLBaseTypeVisitor::visit(const Types::Int8& value) {
    decimal(magnitude(value.value()), value.value() < 0);
}

void ToXMLBaseTypeVisitor::visit(const Types::Int64& value) {
    decimal(magnitude(value.value()), value.value() < 0);
}

void ToXMLBaseTypeVisitor::visit(const Types::Int32& value) {
    decimal(magnitude(value.value()), value.value() < 0);
}

void ToXMLBaseTypeVisitor::visit(const Types::Int16& value) {
    decimal(magnitude(value.value()), value.value() < 0);
}

void ToXMLBaseTypeVisitor::visit(const Types::DataStream& value) {
    hex(value.rawBuffer());
}

void ToXMLBaseTypeVisitor::visit(const Types::Boolean& value) {
    m_sink.text(value.value() ? u"1" : u"0");
}

void ToXMLBaseTypeVisitor::visit(const Types::Batch& value) {
    for (std::uint32_t i = 0; i < value.size(); ++i) {
        value.at(i).accept(*this);
    }
}

void ToXMLBaseTypeVisitor::visit(const Types::Array& value) {
    for (std::uint32_t i = 0; i < value.size(); ++i) {
        value.at(i).accept(*this);
    }
}

} // namespace Vellum::XMLBuilder
