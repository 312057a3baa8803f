#ifndef VELLUM_SRC_METADATA_METAELEMENTOF_H
#define VELLUM_SRC_METADATA_METAELEMENTOF_H

namespace Vellum::MetaMetadata {
class AbstractMetaAttribute;
class MetaElement;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata::detail {

/// The element definition behind an attribute: that of a defined or misplaced element, or
/// nullptr for an unknown one.
const MetaMetadata::MetaElement*
metaElementOf(const MetaMetadata::AbstractMetaAttribute& attribute);

} // namespace Vellum::Metadata::detail

#endif
