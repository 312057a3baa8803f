#include "Vellum/Types/DataStream.h"

namespace Vellum::Types {

DataStream::~DataStream() = default;

} // namespace Vellum::Types
