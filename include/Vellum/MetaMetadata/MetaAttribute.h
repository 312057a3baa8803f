#ifndef VELLUM_METAMETADATA_METAATTRIBUTE_H
#define VELLUM_METAMETADATA_METAATTRIBUTE_H

#include "Vellum/Core/Export.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/MetaMetadata/AttributeRequiredStatus.h"

namespace Vellum::MetaMetadata {

class MetaElement;

/// An element placed where the dictionary puts it. The dictionary makes one per element
/// definition and hands it out through `MetaElement::attribute()`, so every set that has the
/// element (its defining set and the sets that inherit it) shares the same object.
class VELLUM_CORE_EXPORT MetaAttribute : public AbstractMetaAttribute {
public:
    /// Borrows `element`, which must outlive this attribute (the dictionary owns both).
    MetaAttribute(const MetaElement& element, AttributeRequiredStatus::Status status) noexcept;
    ~MetaAttribute() override;

    /// Calls `visitor.visit(*this)`.
    void accept(AbstractMetaAttributeVisitor& visitor) const override;

    const MetaElement& metaElement() const noexcept { return *m_element; }
    /// How strictly the defining set must carry the element.
    AttributeRequiredStatus::Status requiredStatus() const noexcept { return m_status; }

private:
    const MetaElement* m_element;
    AttributeRequiredStatus::Status m_status;
};

} // namespace Vellum::MetaMetadata

#endif
