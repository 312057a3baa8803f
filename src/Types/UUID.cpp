#include "Vellum/Types/UUID.h"

namespace Vellum::Types {

UUID::~UUID() = default;

} // namespace Vellum::Types
