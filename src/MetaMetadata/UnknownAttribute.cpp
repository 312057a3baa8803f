#include "Vellum/MetaMetadata/UnknownAttribute.h"

#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"

namespace Vellum::MetaMetadata {

UnknownAttribute::UnknownAttribute(const Types::LocalTag& localTag, Reason reason) noexcept
    : m_localTag(localTag)
    , m_reason(reason) {}

UnknownAttribute::UnknownAttribute(const Types::LocalTag& localTag,
                                   const Types::UniversalLabel& ul) noexcept
    : m_localTag(localTag)
    , m_reason(LabelNotInDictionary)
    , m_ul(ul) {}

UnknownAttribute::~UnknownAttribute() = default;

void UnknownAttribute::accept(AbstractMetaAttributeVisitor& visitor) const {
    visitor.visit(*this);
}

} // namespace Vellum::MetaMetadata
