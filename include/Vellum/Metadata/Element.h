#ifndef VELLUM_METADATA_ELEMENT_H
#define VELLUM_METADATA_ELEMENT_H

#include "Vellum/Core/Export.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/LocalTag.h"

#include <cstdint>
#include <optional>

namespace Vellum::DataIO {
class DataSink;
} // namespace Vellum::DataIO

namespace Vellum::MetaMetadata {
class AbstractMetaAttribute;
class MetaElement;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {

class MetadataSet;

namespace Visitors {
class ElementVisitor;
class NonConstElementVisitor;
} // namespace Visitors

/// One property of a metadata set: its relation to the dictionary (the meta-attribute), the
/// local tag it was stored under, and a value of the kind its subclass holds.
///
/// Elements are owned by their set and made only by it. An element may hold no value: a set
/// made from the dictionary has every element its definition lists, and those never given a
/// value are neither exported nor serialised (`isEmpty`).
class VELLUM_CORE_EXPORT Element {
public:
    using AttributePtr = Templates::SharedPtr<const MetaMetadata::AbstractMetaAttribute>;

    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    virtual ~Element();

    virtual void accept(Visitors::ElementVisitor& visitor) const = 0;
    virtual void accept(Visitors::NonConstElementVisitor& visitor) = 0;

    /// How the element relates to the dictionary (never null).
    const AttributePtr& metaAttribute() const noexcept { return m_attribute; }
    /// The element's definition for a defined or misplaced element; nullptr for an unknown one.
    const MetaMetadata::MetaElement* metaElement() const noexcept { return m_metaElement; }
    /// The set that owns the element.
    const MetadataSet& owner() const noexcept { return *m_owner; }

    /// True when the element holds no value; such an element is never exported or written.
    virtual bool isEmpty() const noexcept = 0;
    /// Removes the value.
    virtual void clear() noexcept = 0;
    /// The number of bytes of the stored value (0 when empty).
    virtual std::uint64_t valueSize() const = 0;
    /// Writes the stored value (nothing when empty).
    virtual void serializeValue(DataIO::DataSink& sink) const = 0;
    /// Replaces the value with the one stored in `bytes`, read as the element's type.
    /// Throws InvalidLength/InvalidFormat when the bytes do not fit the type; the element is
    /// then unchanged.
    virtual void readValue(DataIO::Slice bytes) = 0;

    /// The local tag the element was stored under, or nothing for an element that was never
    /// stored (it gets a tag from the primer when its set is written).
    std::optional<Types::LocalTag> localTag() const noexcept {
        return m_hasLocalTag ? std::optional<Types::LocalTag>(Types::LocalTag(m_localTag))
                             : std::nullopt;
    }
    void setLocalTag(const Types::LocalTag& tag) noexcept {
        m_localTag = tag.value();
        m_hasLocalTag = true;
    }
    /// Octets of the item's BER length as stored, in a set coded with BER item lengths; 0 for
    /// the shortest form.
    std::uint8_t lengthOctets() const noexcept { return m_lengthOctets; }
    void setLengthOctets(std::uint8_t octets) noexcept { m_lengthOctets = octets; }

protected:
    /// `owner` is the set that owns the element.
    Element(MetadataSet& owner, AttributePtr attribute);

    /// Tells the owning set that the value changed.
    void valueChanged();

private:
    MetadataSet* m_owner;
    AttributePtr m_attribute;
    const MetaMetadata::MetaElement* m_metaElement;
    // The local tag as its number and whether there is one: a set made from the dictionary
    // has an element per item its definition lists, so every byte here counts many times.
    std::uint16_t m_localTag = 0;
    bool m_hasLocalTag = false;
    std::uint8_t m_lengthOctets = 0;
};

} // namespace Vellum::Metadata

#endif
