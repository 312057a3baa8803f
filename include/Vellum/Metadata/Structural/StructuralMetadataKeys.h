#ifndef VELLUM_METADATA_STRUCTURAL_STRUCTURALMETADATAKEYS_H
#define VELLUM_METADATA_STRUCTURAL_STRUCTURALMETADATAKEYS_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Key.h"

namespace Vellum::Metadata::Structural {

/// Keys of structural metadata sets that the toolkit needs by name.
class VELLUM_CORE_EXPORT StructuralMetadataKeys {
public:
    StructuralMetadataKeys() = delete;
    /// The Preface set: 06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00.
    static const KLV::Key& preface() noexcept;
};

} // namespace Vellum::Metadata::Structural

#endif
