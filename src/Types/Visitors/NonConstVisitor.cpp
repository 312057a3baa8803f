#include "Vellum/Types/Visitors/NonConstVisitor.h"

namespace Vellum::Types::Visitors {

NonConstVisitor::~NonConstVisitor() = default;

} // namespace Vellum::Types::Visitors
