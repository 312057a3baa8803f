#include "Vellum/Types/UInt64.h"

namespace Vellum::Types {

UInt64::~UInt64() = default;

} // namespace Vellum::Types
