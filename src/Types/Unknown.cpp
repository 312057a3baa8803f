#include "Vellum/Types/Unknown.h"

namespace Vellum::Types {

Unknown::~Unknown() = default;

} // namespace Vellum::Types
