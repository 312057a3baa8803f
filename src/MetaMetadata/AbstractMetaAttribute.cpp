#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"

namespace Vellum::MetaMetadata {

AbstractMetaAttribute::~AbstractMetaAttribute() = default;

} // namespace Vellum::MetaMetadata
