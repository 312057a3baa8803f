#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"

namespace Vellum::MetaMetadata {

AbstractMetaAttributeVisitor::~AbstractMetaAttributeVisitor() = default;

} // namespace Vellum::MetaMetadata
