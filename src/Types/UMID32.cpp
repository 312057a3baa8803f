#include "Vellum/Types/UMID32.h"

namespace Vellum::Types {

UMID32::~UMID32() = default;

} // namespace Vellum::Types
