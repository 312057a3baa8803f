#include "Vellum/Types/UMID64.h"

namespace Vellum::Types {

UMID64::~UMID64() = default;

} // namespace Vellum::Types
