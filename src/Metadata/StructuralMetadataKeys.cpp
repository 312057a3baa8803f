#include "Vellum/Metadata/Structural/StructuralMetadataKeys.h"

namespace Vellum::Metadata::Structural {

const KLV::Key& StructuralMetadataKeys::preface() noexcept {
    static const KLV::Key key(KLV::Key::Bytes{0x06, 0x0E, 0x2B, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0D,
                                              0x01, 0x01, 0x01, 0x01, 0x01, 0x2F, 0x00});
    return key;
}

} // namespace Vellum::Metadata::Structural
