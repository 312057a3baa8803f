#include "Vellum/Metadata/Structural/StructuralMetadataULs.h"

namespace Vellum::Metadata::Structural {

const Types::UniversalLabel& StructuralMetadataULs::instanceUID() noexcept {
    static const Types::UniversalLabel label(
        Types::UniversalLabel::Bytes{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01,
                                     0x15, 0x02, 0x00, 0x00, 0x00, 0x00});
    return label;
}

} // namespace Vellum::Metadata::Structural
