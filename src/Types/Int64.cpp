#include "Vellum/Types/Int64.h"

namespace Vellum::Types {

Int64::~Int64() = default;

} // namespace Vellum::Types
