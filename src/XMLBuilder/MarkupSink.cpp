#include "XMLBuilder/MarkupSink.h"

namespace Vellum::XMLBuilder {

MarkupSink::~MarkupSink() = default;

} // namespace Vellum::XMLBuilder
