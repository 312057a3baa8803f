#ifndef VELLUM_METADATA_VISITORS_NONCONSTMETADATASETVISITOR_H
#define VELLUM_METADATA_VISITORS_NONCONSTMETADATASETVISITOR_H

#include "Vellum/Core/Export.h"

namespace Vellum::Metadata {
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::Metadata::Visitors {

/// Visitor over metadata sets that may change them (the import fills sets through it).
class VELLUM_CORE_EXPORT NonConstMetadataSetVisitor {
public:
    NonConstMetadataSetVisitor() = default;
    NonConstMetadataSetVisitor(const NonConstMetadataSetVisitor&) = default;
    NonConstMetadataSetVisitor& operator=(const NonConstMetadataSetVisitor&) = default;
    virtual ~NonConstMetadataSetVisitor();

    virtual void visit(MetadataSet& set) = 0;
};

} // namespace Vellum::Metadata::Visitors

#endif
