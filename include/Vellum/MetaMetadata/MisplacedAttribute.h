#ifndef VELLUM_METAMETADATA_MISPLACEDATTRIBUTE_H
#define VELLUM_METAMETADATA_MISPLACEDATTRIBUTE_H

#include "Vellum/Core/Export.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"

namespace Vellum::MetaMetadata {

class MetaElement;

/// A known element found in a set whose definition does not list it (for example a
/// descriptor property inside a track). The value can still be typed through the element.
class VELLUM_CORE_EXPORT MisplacedAttribute : public AbstractMetaAttribute {
public:
    /// Borrows `element`, which must outlive this attribute (the dictionary owns it).
    explicit MisplacedAttribute(const MetaElement& element) noexcept;
    ~MisplacedAttribute() override;

    /// Calls `visitor.visit(*this)`.
    void accept(AbstractMetaAttributeVisitor& visitor) const override;

    /// The element's definition, from the set that does define it.
    const MetaElement& metaElement() const noexcept { return *m_element; }

private:
    const MetaElement* m_element;
};

} // namespace Vellum::MetaMetadata

#endif
