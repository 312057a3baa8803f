#include "Vellum/Types/UniversalLabel.h"

namespace Vellum::Types {

UniversalLabel::~UniversalLabel() = default;

} // namespace Vellum::Types
