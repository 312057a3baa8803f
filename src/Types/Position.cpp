#include "Vellum/Types/Position.h"

namespace Vellum::Types {

Position::~Position() = default;

} // namespace Vellum::Types
