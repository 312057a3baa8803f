#include "Vellum/XMLBuilder/ToXMLBaseTypeVisitor.h"

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
#include "Vellum/XMLBuilder/NamespaceRecord.h"
#include "Vellum/XMLBuilder/Vocabulary.h"
#include "Vellum/XMLUtils/UnicodeString.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMText.hpp>

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
    XMLUtils::UnicodeString name;
    const XMLUtils::UnicodeString* namespaceName = nullptr;
};

const std::array<QualifiedName, NameCount>& names() {
    static const XMLUtils::UnicodeString types{WString(Vocabulary::typesNamespace)};
    static const XMLUtils::UnicodeString s422m{WString(Vocabulary::s422mTypesNamespace)};
    static const std::array<QualifiedName, NameCount> table = {{
        {XMLUtils::UnicodeString("types:Denominator"), &types},
        {XMLUtils::UnicodeString("types:Numerator"), &types},
        {XMLUtils::UnicodeString("types:Major"), &types},
        {XMLUtils::UnicodeString("types:Minor"), &types},
        {XMLUtils::UnicodeString("types:Patch"), &types},
        {XMLUtils::UnicodeString("types:Build"), &types},
        {XMLUtils::UnicodeString("types:Release"), &types},
        {XMLUtils::UnicodeString("types:Year"), &types},
        {XMLUtils::UnicodeString("types:Month"), &types},
        {XMLUtils::UnicodeString("types:Day"), &types},
        {XMLUtils::UnicodeString("types:Hour"), &types},
        {XMLUtils::UnicodeString("types:Minute"), &types},
        {XMLUtils::UnicodeString("types:Second"), &types},
        {XMLUtils::UnicodeString("types:mSec4"), &types},
        {XMLUtils::UnicodeString("types:RGBAComponent"), &types},
        {XMLUtils::UnicodeString("types:Code"), &types},
        {XMLUtils::UnicodeString("types:Depth"), &types},
        {XMLUtils::UnicodeString("s422mTypes:J2KPictureComponent"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:Ssizi"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:XRSizi"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:YRSizi"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:J2KCodingStyleDefault"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:Scod"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:SGcod"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:Spcod"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:J2KQuantisationDefault"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:Sqcd"), &s422m},
        {XMLUtils::UnicodeString("s422mTypes:SPgcd"), &s422m},
    }};
    return table;
}

template <class T>
WString decimal(T value) {
    const std::string text = std::to_string(value);
    return WString(text.begin(), text.end());
}

// The number of components an RGBA layout writes, whatever its slots hold.
constexpr std::size_t rgbaComponentsWritten = 5;

} // namespace

ToXMLBaseTypeVisitor::ToXMLBaseTypeVisitor(xercesc::DOMElement* target, NamespaceRecord& namespaces)
    : m_element(target)
    , m_attribute(nullptr) {
    namespaces.enterIfPrefixUnbound(Vocabulary::typesNamespace, Vocabulary::typesPrefix);
    namespaces.enterIfPrefixUnbound(Vocabulary::s422mTypesNamespace, Vocabulary::s422mTypesPrefix);
}

ToXMLBaseTypeVisitor::ToXMLBaseTypeVisitor(xercesc::DOMAttr* target) noexcept
    : m_element(nullptr)
    , m_attribute(target) {}

ToXMLBaseTypeVisitor::~ToXMLBaseTypeVisitor() = default;

WString ToXMLBaseTypeVisitor::hexText(const std::uint8_t* bytes, std::size_t count) {
    static constexpr char16_t digits[] = u"0123456789ABCDEF";
    WString out;
    out.reserve(count * 2);
    for (std::size_t i = 0; i < count; ++i) {
        out.push_back(digits[bytes[i] >> 4U]);
        out.push_back(digits[bytes[i] & 0x0FU]);
    }
    return out;
}

void ToXMLBaseTypeVisitor::appendText(const WString& text) {
    if (m_element != nullptr) {
        const WString xml = xmlCharacters(text);
        m_element->appendChild(m_element->getOwnerDocument()->createTextNode(xml.c_str()));
    }
}

WString ToXMLBaseTypeVisitor::xmlCharacters(const WString& text) {
    // XML 1.0 holds tab, LF, CR, U+0020..U+D7FF, U+E000..U+FFFD and paired surrogates.
    WString out = text;
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

void ToXMLBaseTypeVisitor::writeIdentifier(const WString& text) {
    if (m_attribute != nullptr) {
        m_attribute->setValue(text.c_str());
    } else {
        appendText(text);
    }
}

void ToXMLBaseTypeVisitor::writeHex(const std::vector<std::uint8_t>& bytes) {
    appendText(hexText(bytes.data(), bytes.size()));
}

xercesc::DOMElement* ToXMLBaseTypeVisitor::appendChild(xercesc::DOMElement* parent,
                                                       std::size_t name, const WString* text) {
    const QualifiedName& qname = names()[name];
    xercesc::DOMDocument* document = parent->getOwnerDocument();
    xercesc::DOMElement* child =
        document->createElementNS(qname.namespaceName->utf16(), qname.name.utf16());
    parent->appendChild(child);
    if (text != nullptr) {
        child->appendChild(document->createTextNode(text->c_str()));
    }
    return child;
}

void ToXMLBaseTypeVisitor::visit(const Types::J2KQuantisationDefault& value) {
    if (m_element == nullptr) {
        return;
    }
    xercesc::DOMElement* group = appendChild(m_element, J2KQuantisationDefault);
    const WString sqcd = decimal(unsigned{value.sqcd()});
    const auto bytes = value.sPgcd().rawBuffer();
    const WString spgcd = hexText(bytes.data(), bytes.size());
    appendChild(group, Sqcd, &sqcd);
    appendChild(group, SPgcd, &spgcd);
}

void ToXMLBaseTypeVisitor::visit(const Types::J2KCodingStyleDefault& value) {
    if (m_element == nullptr) {
        return;
    }
    xercesc::DOMElement* group = appendChild(m_element, J2KCodingStyleDefault);
    const WString scod = decimal(unsigned{value.scod()});
    const WString sgcod = decimal(value.sGcod());
    const auto bytes = value.spcod().rawBuffer();
    const WString spcod = hexText(bytes.data(), bytes.size());
    appendChild(group, Scod, &scod);
    appendChild(group, SGcod, &sgcod);
    appendChild(group, Spcod, &spcod);
}

void ToXMLBaseTypeVisitor::visit(const Types::J2KPictureComponent& value) {
    if (m_element == nullptr) {
        return;
    }
    xercesc::DOMElement* group = appendChild(m_element, J2KPictureComponent);
    const WString ssizi = decimal(unsigned{value.sSizi()});
    const WString xrsizi = decimal(unsigned{value.xRSizi()});
    const WString yrsizi = decimal(unsigned{value.yRSizi()});
    appendChild(group, Ssizi, &ssizi);
    appendChild(group, XRSizi, &xrsizi);
    appendChild(group, YRSizi, &yrsizi);
}

void ToXMLBaseTypeVisitor::visit(const Types::DataValue& value) {
    writeHex(value.rawBuffer());
}

void ToXMLBaseTypeVisitor::visit(const Types::StrongReference& value) {
    writeIdentifier(value.toString());
}

void ToXMLBaseTypeVisitor::visit(const Types::WeakReference& value) {
    writeIdentifier(value.toString());
}

void ToXMLBaseTypeVisitor::visit(const Types::Unknown& value) {
    writeHex(value.rawBuffer());
}

void ToXMLBaseTypeVisitor::visit(const Types::VersionType& value) {
    appendNumber(decimal(unsigned{value.major()} * 256U + value.minor()));
}

void ToXMLBaseTypeVisitor::visit(const Types::UUID& value) {
    writeIdentifier(value.toString());
}

void ToXMLBaseTypeVisitor::visit(const Types::UTF16String& value) {
    appendText(value.value());
}

void ToXMLBaseTypeVisitor::visit(const Types::UTF16& value) {
    appendText(WString(1, value.value()));
}

// A label is written as an attribute too: the dictionary may type an identity element (such
// as GenerationUID) as a label.
void ToXMLBaseTypeVisitor::visit(const Types::UniversalLabel& value) {
    writeIdentifier(value.toString());
}

void ToXMLBaseTypeVisitor::visit(const Types::UMID64& value) {
    appendText(value.toString());
}

void ToXMLBaseTypeVisitor::visit(const Types::UMID32& value) {
    appendText(value.toString());
}

void ToXMLBaseTypeVisitor::visit(const Types::UInt8& value) {
    appendNumber(decimal(unsigned{value.value()}));
}

void ToXMLBaseTypeVisitor::visit(const Types::UInt64& value) {
    appendNumber(decimal(value.value()));
}

void ToXMLBaseTypeVisitor::visit(const Types::UInt32& value) {
    appendNumber(decimal(value.value()));
}

void ToXMLBaseTypeVisitor::visit(const Types::UInt16& value) {
    appendNumber(decimal(unsigned{value.value()}));
}

void ToXMLBaseTypeVisitor::visit(const Types::Timestamp& value) {
    if (m_element == nullptr) {
        return;
    }
    const WString fields[] = {
        decimal(unsigned{value.year()}),       decimal(unsigned{value.month()}),
        decimal(unsigned{value.day()}),        decimal(unsigned{value.hour()}),
        decimal(unsigned{value.minute()}),     decimal(unsigned{value.second()}),
        decimal(unsigned{value.milliSecond()})};
    const Name childNames[] = {Year, Month, Day, Hour, Minute, Second, MSec4};
    for (std::size_t i = 0; i < 7; ++i) {
        appendChild(m_element, childNames[i], &fields[i]);
    }
}

void ToXMLBaseTypeVisitor::visit(const Types::SignalStandard& value) {
    appendNumber(decimal(unsigned{value.value()}));
}

void ToXMLBaseTypeVisitor::visit(const Types::RGBALayout& value) {
    if (m_element == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < rgbaComponentsWritten; ++i) {
        const auto component = value.get(i);
        xercesc::DOMElement* group = appendChild(m_element, RGBAComponent);
        const WString code = decimal(unsigned{component.code});
        const WString depth = decimal(unsigned{component.depth});
        appendChild(group, Code, &code);
        appendChild(group, Depth, &depth);
    }
}

void ToXMLBaseTypeVisitor::visit(const Types::Rational& value) {
    if (m_element == nullptr) {
        return;
    }
    const WString numerator = decimal(value.numerator());
    const WString denominator = decimal(value.denominator());
    appendChild(m_element, Numerator, &numerator);
    appendChild(m_element, Denominator, &denominator);
}

void ToXMLBaseTypeVisitor::visit(const Types::ProductVersion& value) {
    if (m_element == nullptr) {
        return;
    }
    const WString fields[] = {decimal(unsigned{value.major()}), decimal(unsigned{value.minor()}),
                              decimal(unsigned{value.patch()}), decimal(unsigned{value.build()}),
                              decimal(static_cast<unsigned>(value.releaseVersion()))};
    const Name childNames[] = {Major, Minor, Patch, Build, Release};
    for (std::size_t i = 0; i < 5; ++i) {
        appendChild(m_element, childNames[i], &fields[i]);
    }
}

void ToXMLBaseTypeVisitor::visit(const Types::Position& value) {
    appendNumber(decimal(value.value()));
}

void ToXMLBaseTypeVisitor::visit(const Types::Orientation& value) {
    appendNumber(decimal(unsigned{value.value()}));
}

void ToXMLBaseTypeVisitor::visit(const Types::LocalTag& value) {
    appendText(value.toString());
}

void ToXMLBaseTypeVisitor::visit(const Types::Length& value) {
    appendNumber(decimal(value.value()));
}

void ToXMLBaseTypeVisitor::visit(const Types::ISO7String& value) {
    appendText(XMLUtils::UnicodeString(value.value().c_str()).wstring());
}

void ToXMLBaseTypeVisitor::visit(const Types::Int8& value) {
    appendNumber(decimal(int{value.value()}));
}

void ToXMLBaseTypeVisitor::visit(const Types::Int64& value) {
    appendNumber(decimal(value.value()));
}

void ToXMLBaseTypeVisitor::visit(const Types::Int32& value) {
    appendNumber(decimal(value.value()));
}

void ToXMLBaseTypeVisitor::visit(const Types::Int16& value) {
    appendNumber(decimal(int{value.value()}));
}

void ToXMLBaseTypeVisitor::visit(const Types::DataStream& value) {
    writeHex(value.rawBuffer());
}

void ToXMLBaseTypeVisitor::visit(const Types::Boolean& value) {
    appendNumber(value.value() ? u"1" : u"0");
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
