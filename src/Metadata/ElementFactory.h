#ifndef VELLUM_SRC_METADATA_ELEMENTFACTORY_H
#define VELLUM_SRC_METADATA_ELEMENTFACTORY_H

#include "Vellum/Metadata/Element.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Vellum::Metadata::detail {

/// The class of element a meta-element asks for.
enum class ElementKind : std::uint8_t {
    Simple,
    Reference,
    Array,
    Batch,
    ReferenceArray,
    ReferenceBatch,
};

/// The kind of element `meta` asks for (a simple element when `meta` is null): reference,
/// batch or array of references, batch, array, or simple value.
ElementKind elementKindOf(const MetaMetadata::MetaElement* meta) noexcept;

/// The alignment every kind of element needs.
std::size_t elementAlignment() noexcept;

/// The bytes an element of `kind` takes, a multiple of `elementAlignment()`.
std::size_t elementSize(ElementKind kind) noexcept;

/// Makes the element `meta` asks for (of kind `elementKindOf(meta)`) in `storage`, which
/// holds at least `elementSize` bytes aligned to `elementAlignment()`. The caller destroys it.
Element* constructElement(void* storage, MetadataSet& owner, Element::AttributePtr attribute,
                          const MetaMetadata::MetaElement* meta);

/// A new element of the kind `meta` asks for (see `elementKindOf`).
std::unique_ptr<Element> makeElement(MetadataSet& owner, Element::AttributePtr attribute,
                                     const MetaMetadata::MetaElement* meta);

} // namespace Vellum::Metadata::detail

#endif
