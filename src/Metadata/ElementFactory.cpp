#include "Metadata/ElementFactory.h"

#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Metadata/ArrayElement.h"
#include "Vellum/Metadata/BatchElement.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"

#include <utility>

namespace Vellum::Metadata::detail {
namespace {

bool isReferenceType(Types::Identifiers::Identifier type) {
    return type == Types::Identifiers::StrongReference || type == Types::Identifiers::WeakReference;
}

} // namespace

std::unique_ptr<Element> makeElement(MetadataSet& owner, Element::AttributePtr attribute,
                                     const MetaMetadata::MetaElement* meta) {
    if (meta == nullptr) {
        return std::make_unique<SimpleElement>(owner, std::move(attribute));
    }
    const auto item = meta->valueType();
    if (meta->isCollection()) {
        const bool batch = meta->dataType() == Types::Identifiers::Batch;
        if (isReferenceType(item)) {
            if (batch) {
                return std::make_unique<ReferenceBatchElement>(owner, std::move(attribute), item);
            }
            return std::make_unique<ReferenceArrayElement>(owner, std::move(attribute), item);
        }
        if (batch) {
            return std::make_unique<BatchElement>(owner, std::move(attribute), item);
        }
        return std::make_unique<ArrayElement>(owner, std::move(attribute), item);
    }
    if (isReferenceType(item)) {
        return std::make_unique<ReferenceElement>(owner, std::move(attribute));
    }
    return std::make_unique<SimpleElement>(owner, std::move(attribute));
}

} // namespace Vellum::Metadata::detail
