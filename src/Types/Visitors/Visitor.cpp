#include "Vellum/Types/Visitors/Visitor.h"

namespace Vellum::Types::Visitors {

Visitor::~Visitor() = default;

} // namespace Vellum::Types::Visitors
