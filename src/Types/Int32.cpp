#include "Vellum/Types/Int32.h"

namespace Vellum::Types {

Int32::~Int32() = default;

} // namespace Vellum::Types
