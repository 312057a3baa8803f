#include "Vellum/Types/UTF16.h"

namespace Vellum::Types {

UTF16::~UTF16() = default;

} // namespace Vellum::Types
