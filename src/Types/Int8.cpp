#include "Vellum/Types/Int8.h"

namespace Vellum::Types {

Int8::~Int8() = default;

} // namespace Vellum::Types
