#include "Vellum/Types/SignalStandard.h"

namespace Vellum::Types {

SignalStandard::~SignalStandard() = default;

} // namespace Vellum::Types
