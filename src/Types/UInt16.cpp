#include "Vellum/Types/UInt16.h"

namespace Vellum::Types {

UInt16::~UInt16() = default;

} // namespace Vellum::Types
