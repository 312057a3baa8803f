#include "Vellum/Types/UInt32.h"

namespace Vellum::Types {

UInt32::~UInt32() = default;

} // namespace Vellum::Types
