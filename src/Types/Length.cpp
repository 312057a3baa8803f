#include "Vellum/Types/Length.h"

namespace Vellum::Types {

Length::~Length() = default;

} // namespace Vellum::Types
