#include "Vellum/Types/Orientation.h"

namespace Vellum::Types {

Orientation::~Orientation() = default;

} // namespace Vellum::Types
