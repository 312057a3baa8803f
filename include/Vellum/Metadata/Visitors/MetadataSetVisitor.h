#ifndef VELLUM_METADATA_VISITORS_METADATASETVISITOR_H
#define VELLUM_METADATA_VISITORS_METADATASETVISITOR_H

#include "Vellum/Core/Export.h"

namespace Vellum::Metadata {
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::Metadata::Visitors {

/// Read-only visitor over metadata sets (dictionary-defined sets and dark parsed groups alike).
class VELLUM_CORE_EXPORT MetadataSetVisitor {
public:
    MetadataSetVisitor() = default;
    MetadataSetVisitor(const MetadataSetVisitor&) = default;
    MetadataSetVisitor& operator=(const MetadataSetVisitor&) = default;
    virtual ~MetadataSetVisitor();

    virtual void visit(const MetadataSet& set) = 0;
};

} // namespace Vellum::Metadata::Visitors

#endif
