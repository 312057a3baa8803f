#include "Vellum/Types/Int16.h"

namespace Vellum::Types {

Int16::~Int16() = default;

} // namespace Vellum::Types
