#include "Vellum/MetaMetadata/AttributeRequiredStatus.h"

namespace Vellum::MetaMetadata::AttributeRequiredStatus {
namespace {

// Indexed by Status.
constexpr const char* statusNames[] = {
    "required", "optional", "best-effort", "decoder-required", "encoder-required",
};

} // namespace

const char* name(Status status) noexcept {
    const unsigned index = status;
    return index < sizeof statusNames / sizeof statusNames[0] ? statusNames[index] : nullptr;
}

} // namespace Vellum::MetaMetadata::AttributeRequiredStatus
