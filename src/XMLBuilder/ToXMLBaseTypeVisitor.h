#ifndef VELLUM_SRC_XMLBUILDER_TOXMLBASETYPEVISITOR_H
#define VELLUM_SRC_XMLBUILDER_TOXMLBASETYPEVISITOR_H

#include "XMLBuilder/MarkupSink.h"

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/BaseType.h"
#include "Vellum/Types/Visitors/Visitor.h"
#include "Vellum/XMLBuilder/Export.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Vellum::XMLBuilder {

/// Writes one value as the content of the element being written to a sink: text, and child
/// elements for compound values ("types:..." and "s422mTypes:..."; the caller enters those
/// namespaces). Owns nothing.
class VELLUM_XMLBUILDER_EXPORT ToXMLBaseTypeVisitor : public Types::Visitors::Visitor {
public:
    explicit ToXMLBaseTypeVisitor(MarkupSink& sink) noexcept
        : m_sink(sink) {}
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

    /// `text` with every character XML 1.0 cannot hold (control characters other than tab,
    /// LF and CR, unpaired surrogates, U+FFFE, U+FFFF) replaced by U+FFFD.
    static WString xmlCharacters(std::u16string_view text);

    /// Room for the attribute text of an identifier.
    using AttributeBuffer = std::array<char16_t, 48>;

    /// The text of `value` as an attribute (an identity element, a reference's target): the
    /// dotted hexadecimal form of UUIDs, labels and references, empty for any other value.
    /// Written into `buffer`.
    static std::u16string_view attributeText(const Types::BaseType& value, AttributeBuffer& buffer);
    static WString attributeText(const Types::BaseType& value);

private:
    /// One text node holding `text`, its characters made fit for XML.
    void text(std::u16string_view text);
    void decimal(std::uint64_t value, bool negative = false);
    void hex(const std::vector<std::uint8_t>& bytes);
    void identifier(const std::uint8_t* bytes, std::size_t count);
    /// A child element `name` (an index into the fixed name table), started.
    void start(std::size_t name);
    /// A child element `name` holding the decimal `value`.
    void child(std::size_t name, std::uint64_t value);

    MarkupSink& m_sink;
};

} // namespace Vellum::XMLBuilder

#endif
