#include "UsageError.h"

#include <utility>

namespace Vellum::App {

UsageError::UsageError(const std::string& message, std::string synopsis)
    : std::runtime_error(message)
    , m_synopsis(std::move(synopsis)) {}

} // namespace Vellum::App
