#include "Vellum/Types/Visitors/Visitable.h"

namespace Vellum::Types::Visitors {

Visitable::~Visitable() = default;

} // namespace Vellum::Types::Visitors
