#include "Metadata/ElementFactory.h"

#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Metadata/ArrayElement.h"
#include "Vellum/Metadata/BatchElement.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"

#include <algorithm>
#include <new>
#include <type_traits>
#include <utility>

namespace Vellum::Metadata::detail {
namespace {

bool isReferenceType(Types::Identifiers::Identifier type) {
    return type == Types::Identifiers::StrongReference || type == Types::Identifiers::WeakReference;
}

constexpr std::size_t alignment = std::max(
    {alignof(SimpleElement), alignof(ReferenceElement), alignof(ArrayElement),
     alignof(BatchElement), alignof(ReferenceArrayElement), alignof(ReferenceBatchElement)});
static_assert(alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__,
              "elements are placed in blocks from the default operator new");

constexpr std::size_t rounded(std::size_t size) {
    return (size + alignment - 1) / alignment * alignment;
}

/// Makes the element of `kind` with `make`, which is given a null pointer of the class to make
/// and the arguments its constructor takes after the owner and the attribute.
template <class Make>
auto withKind(ElementKind kind, const MetaMetadata::MetaElement* meta, Make&& make) {
    const auto item = meta != nullptr ? meta->valueType() : Types::Identifiers::Identifier{};
    switch (kind) {
    case ElementKind::Reference:
        return make(static_cast<ReferenceElement*>(nullptr));
    case ElementKind::Array:
        return make(static_cast<ArrayElement*>(nullptr), item);
    case ElementKind::Batch:
        return make(static_cast<BatchElement*>(nullptr), item);
    case ElementKind::ReferenceArray:
        return make(static_cast<ReferenceArrayElement*>(nullptr), item);
    case ElementKind::ReferenceBatch:
        return make(static_cast<ReferenceBatchElement*>(nullptr), item);
    case ElementKind::Simple:
        break;
    }
    return make(static_cast<SimpleElement*>(nullptr));
}

} // namespace

ElementKind elementKindOf(const MetaMetadata::MetaElement* meta) noexcept {
    if (meta == nullptr) {
        return ElementKind::Simple;
    }
    const bool reference = isReferenceType(meta->valueType());
    if (meta->isCollection()) {
        if (meta->dataType() == Types::Identifiers::Batch) {
            return reference ? ElementKind::ReferenceBatch : ElementKind::Batch;
        }
        return reference ? ElementKind::ReferenceArray : ElementKind::Array;
    }
    return reference ? ElementKind::Reference : ElementKind::Simple;
}

std::size_t elementAlignment() noexcept {
    return alignment;
}

std::size_t elementSize(ElementKind kind) noexcept {
    switch (kind) {
    case ElementKind::Reference:
        return rounded(sizeof(ReferenceElement));
    case ElementKind::Array:
        return rounded(sizeof(ArrayElement));
    case ElementKind::Batch:
        return rounded(sizeof(BatchElement));
    case ElementKind::ReferenceArray:
        return rounded(sizeof(ReferenceArrayElement));
    case ElementKind::ReferenceBatch:
        return rounded(sizeof(ReferenceBatchElement));
    case ElementKind::Simple:
        break;
    }
    return rounded(sizeof(SimpleElement));
}

Element* constructElement(void* storage, MetadataSet& owner, Element::AttributePtr attribute,
                          const MetaMetadata::MetaElement* meta) {
    return withKind(elementKindOf(meta), meta, [&](auto* tag, auto... item) -> Element* {
        using Made = std::remove_pointer_t<decltype(tag)>;
        return ::new (storage) Made(owner, std::move(attribute), item...);
    });
}

std::unique_ptr<Element> makeElement(MetadataSet& owner, Element::AttributePtr attribute,
                                     const MetaMetadata::MetaElement* meta) {
    return withKind(elementKindOf(meta), meta,
                    [&](auto* tag, auto... item) -> std::unique_ptr<Element> {
                        using Made = std::remove_pointer_t<decltype(tag)>;
                        return std::make_unique<Made>(owner, std::move(attribute), item...);
                    });
}

} // namespace Vellum::Metadata::detail
