#include "Vellum/Metadata/MetadataDifference.h"

namespace Vellum::Metadata {

const char* MetadataDifference::kindName(Kind kind) noexcept {
    switch (kind) {
    case Kind::SetAdded:
        return "set added";
    case Kind::SetRemoved:
        return "set removed";
    case Kind::SetKeyChanged:
        return "set key changed";
    case Kind::ItemAdded:
        return "item added";
    case Kind::ItemRemoved:
        return "item removed";
    case Kind::ItemChanged:
        return "item changed";
    case Kind::DarkSetAdded:
        return "dark set added";
    case Kind::DarkSetRemoved:
        return "dark set removed";
    }
    return "difference";
}

} // namespace Vellum::Metadata
