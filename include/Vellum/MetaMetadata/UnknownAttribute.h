#ifndef VELLUM_METAMETADATA_UNKNOWNATTRIBUTE_H
#define VELLUM_METAMETADATA_UNKNOWNATTRIBUTE_H

#include "Vellum/Core/Export.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/UniversalLabel.h"

#include <cstdint>
#include <optional>

namespace Vellum::MetaMetadata {

/// An element the dictionary does not know, identified by its local tag (and, where the
/// primer resolves the tag, by its label). Its value can only be kept as raw bytes.
class VELLUM_CORE_EXPORT UnknownAttribute : public AbstractMetaAttribute {
public:
    /// Why the element is unknown.
    enum Reason : std::uint8_t {
        LocalTagNotResolved = 0,  ///< the primer has no label for the local tag
        LabelNotInDictionary = 1, ///< the label is known, but the dictionary has no definition
    };

    /// An unknown element with no label at hand.
    UnknownAttribute(const Types::LocalTag& localTag, Reason reason) noexcept;
    /// An unknown element whose tag resolved to `ul` (reason LabelNotInDictionary).
    UnknownAttribute(const Types::LocalTag& localTag, const Types::UniversalLabel& ul) noexcept;
    ~UnknownAttribute() override;

    /// Calls `visitor.visit(*this)`.
    void accept(AbstractMetaAttributeVisitor& visitor) const override;

    const Types::LocalTag& localTag() const noexcept { return m_localTag; }
    Reason reason() const noexcept { return m_reason; }
    /// The element's label, or nullptr when it is not known.
    const Types::UniversalLabel* universalLabel() const noexcept { return m_ul ? &*m_ul : nullptr; }

private:
    Types::LocalTag m_localTag;
    Reason m_reason;
    std::optional<Types::UniversalLabel> m_ul;
};

} // namespace Vellum::MetaMetadata

#endif
