#include "Vellum/Types/UInt8.h"

namespace Vellum::Types {

UInt8::~UInt8() = default;

} // namespace Vellum::Types
