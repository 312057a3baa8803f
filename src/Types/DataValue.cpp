#include "Vellum/Types/DataValue.h"

namespace Vellum::Types {

DataValue::~DataValue() = default;

} // namespace Vellum::Types
