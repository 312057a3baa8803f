#ifndef VELLUM_XMLBUILDER_FROMXMLMETAATTRIBUTEVISITOR_H
#define VELLUM_XMLBUILDER_FROMXMLMETAATTRIBUTEVISITOR_H

#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"

namespace Vellum::MetaMetadata {
class MetaElement;
} // namespace Vellum::MetaMetadata

namespace Vellum::XMLBuilder {

/// Finds the dictionary entry behind an element's meta-attribute, for the import: the
/// element's definition for a defined or misplaced element, none for an unknown one, and the
/// "SchemaIndex" text for a defined element only. Both results are borrowed from the
/// dictionary and start empty.
class VELLUM_XMLBUILDER_EXPORT FromXMLMetaAttributeVisitor
    : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    FromXMLMetaAttributeVisitor() = default;
    ~FromXMLMetaAttributeVisitor() override;

    void visit(const MetaMetadata::UnknownAttribute& attribute) override;
    void visit(const MetaMetadata::MisplacedAttribute& attribute) override;
    void visit(const MetaMetadata::MetaAttribute& attribute) override;

    /// The dictionary entry found, or nullptr.
    const MetaMetadata::MetaElement* metaElement() const noexcept { return m_metaElement; }
    /// The "SchemaIndex" text of a defined element, or nullptr.
    const WString* schemaIndex() const noexcept { return m_schemaIndex; }

private:
    const MetaMetadata::MetaElement* m_metaElement = nullptr;
    const WString* m_schemaIndex = nullptr;
};

} // namespace Vellum::XMLBuilder

#endif
