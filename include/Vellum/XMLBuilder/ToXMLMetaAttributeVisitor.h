#ifndef VELLUM_XMLBUILDER_TOXMLMETAATTRIBUTEVISITOR_H
#define VELLUM_XMLBUILDER_TOXMLMETAATTRIBUTEVISITOR_H

#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"

namespace Vellum::MetaMetadata {
class MetaElement;
} // namespace Vellum::MetaMetadata

namespace Vellum::XMLBuilder {

/// Classifies an element's meta-attribute for the element writer: defined here (kind 0),
/// misplaced (1) or unknown (2), with the definition, its "SchemaIndex" text and, for an
/// unknown element, its local tag as text.
class VELLUM_XMLBUILDER_EXPORT ToXMLMetaAttributeVisitor
    : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    enum Kind : int { Defined = 0, Misplaced = 1, Unknown = 2 };

    ToXMLMetaAttributeVisitor() = default;
    ~ToXMLMetaAttributeVisitor() override;

    void visit(const MetaMetadata::UnknownAttribute& attribute) override;
    void visit(const MetaMetadata::MisplacedAttribute& attribute) override;
    void visit(const MetaMetadata::MetaAttribute& attribute) override;

    Kind kind() const noexcept { return m_kind; }
    /// The definition, or nullptr for an unknown element.
    const MetaMetadata::MetaElement* metaElement() const noexcept { return m_metaElement; }
    /// The "SchemaIndex" text of a defined element, or nullptr.
    const WString* schemaIndexText() const noexcept { return m_schemaIndex; }
    /// The local tag of an unknown element as text ("3C.0A"); empty otherwise.
    const WString& localTagText() const noexcept { return m_localTag; }

private:
    Kind m_kind = Unknown;
    const MetaMetadata::MetaElement* m_metaElement = nullptr;
    const WString* m_schemaIndex = nullptr;
    WString m_localTag;
};

} // namespace Vellum::XMLBuilder

#endif
