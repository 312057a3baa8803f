#include "Vellum/Types/BaseType.h"

namespace Vellum::Types {

BaseType::~BaseType() = default;

} // namespace Vellum::Types
