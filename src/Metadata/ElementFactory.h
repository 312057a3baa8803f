#ifndef VELLUM_SRC_METADATA_ELEMENTFACTORY_H
#define VELLUM_SRC_METADATA_ELEMENTFACTORY_H

#include "Vellum/Metadata/Element.h"

#include <memory>

namespace Vellum::Metadata::detail {

/// A new element of the kind `meta` asks for (a simple element when `meta` is null):
/// reference, batch or array of references, batch, array, or simple value.
std::unique_ptr<Element> makeElement(MetadataSet& owner, Element::AttributePtr attribute,
                                     const MetaMetadata::MetaElement* meta);

} // namespace Vellum::Metadata::detail

#endif
