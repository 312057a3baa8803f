#ifndef VELLUM_XMLBUILDER_TOXMLBASETYPEVISITOR_H
#define VELLUM_XMLBUILDER_TOXMLBASETYPEVISITOR_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Visitors/Visitor.h"
#include "Vellum/XMLBuilder/Export.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include <cstddef>
#include <cstdint>

namespace Vellum::XMLBuilder {

class NamespaceRecord;

/// Writes one value as XML: as text (and child elements, for compound values) inside a
/// target element, or, for identifiers and references only, as the value of a target
/// attribute. Made for one target and discarded after the value is written; owns nothing.
class VELLUM_XMLBUILDER_EXPORT ToXMLBaseTypeVisitor : public Types::Visitors::Visitor {
public:
    /// Element mode. Enters the "types" and "s422mTypes" namespaces into `namespaces` unless
    /// their prefixes are already bound.
    ToXMLBaseTypeVisitor(xercesc::DOMElement* target, NamespaceRecord& namespaces);
    /// Attribute mode: only UUIDs and references are written (as the attribute's value).
    explicit ToXMLBaseTypeVisitor(xercesc::DOMAttr* target) noexcept;
    ~ToXMLBaseTypeVisitor() override;

    void visit(const Types::J2KQuantisationDefault& value) override;
    void visit(const Types::J2KCodingStyleDefault& value) override;
    void visit(const Types::J2KPictureComponent& value) override;
    void visit(const Types::DataValue& value) override;
    void visit(const Types::StrongReference& value) override;
    void visit(const Types::WeakReference& value) override;
    void visit(const Types::Unknown& value) override;
    void visit(const Types::VersionType& value) override;
    void visit(const Types::UUID& value) override;
    void visit(const Types::UTF16String& value) override;
    void visit(const Types::UTF16& value) override;
    void visit(const Types::UniversalLabel& value) override;
    void visit(const Types::UMID64& value) override;
    void visit(const Types::UMID32& value) override;
    void visit(const Types::UInt8& value) override;
    void visit(const Types::UInt64& value) override;
    void visit(const Types::UInt32& value) override;
    void visit(const Types::UInt16& value) override;
    void visit(const Types::Timestamp& value) override;
    void visit(const Types::SignalStandard& value) override;
    void visit(const Types::RGBALayout& value) override;
    void visit(const Types::Rational& value) override;
    void visit(const Types::ProductVersion& value) override;
    void visit(const Types::Position& value) override;
    void visit(const Types::Orientation& value) override;
    void visit(const Types::LocalTag& value) override;
    void visit(const Types::Length& value) override;
    void visit(const Types::ISO7String& value) override;
    void visit(const Types::Int8& value) override;
    void visit(const Types::Int64& value) override;
    void visit(const Types::Int32& value) override;
    void visit(const Types::Int16& value) override;
    void visit(const Types::DataStream& value) override;
    void visit(const Types::Boolean& value) override;
    void visit(const Types::Batch& value) override;
    void visit(const Types::Array& value) override;

    /// Two upper-case hexadecimal digits a byte, no separators ("0A1B").
    static WString hexText(const std::uint8_t* bytes, std::size_t count);

    /// `text` with every character XML 1.0 cannot hold (control characters other than tab,
    /// LF and CR, unpaired surrogates, U+FFFE, U+FFFF) replaced by U+FFFD.
    static WString xmlCharacters(const WString& text);

private:
    void writeIdentifier(const WString& text);
    void appendText(const WString& text);
    void appendNumber(const WString& text) { appendText(text); }
    /// Appends to `parent` a child named `name` (an index into the fixed name table) holding
    /// `text`.
    xercesc::DOMElement* appendChild(xercesc::DOMElement* parent, std::size_t name,
                                     const WString* text = nullptr);
    void writeHex(const std::vector<std::uint8_t>& bytes);

    xercesc::DOMElement* m_element;
    xercesc::DOMAttr* m_attribute;
};

} // namespace Vellum::XMLBuilder

#endif
