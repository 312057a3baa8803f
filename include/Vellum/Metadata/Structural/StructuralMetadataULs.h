#ifndef VELLUM_METADATA_STRUCTURAL_STRUCTURALMETADATAULS_H
#define VELLUM_METADATA_STRUCTURAL_STRUCTURALMETADATAULS_H

#include "Vellum/Core/Export.h"
#include "Vellum/Types/UniversalLabel.h"

namespace Vellum::Metadata::Structural {

/// Labels of structural metadata elements that the toolkit needs by name.
class VELLUM_CORE_EXPORT StructuralMetadataULs {
public:
    StructuralMetadataULs() = delete;
    /// InstanceUID: 06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00.
    static const Types::UniversalLabel& instanceUID() noexcept;
};

} // namespace Vellum::Metadata::Structural

#endif
