#include "Vellum/XMLBuilder/ReferenceNameTable.h"

#include "Vellum/Types/Factories/UID.h"
#include "Vellum/Types/UUID.h"

namespace Vellum::XMLBuilder {
namespace {

bool isHexDigit(char16_t c) noexcept {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

} // namespace

bool ReferenceNameTable::isIdentifierText(const WString& text) noexcept {
    constexpr std::size_t bytes = 16;
    if (text.size() != 3 * bytes - 1) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool separator = i % 3 == 2;
        if (separator ? text[i] != u'.' : !isHexDigit(text[i])) {
            return false;
        }
    }
    return true;
}

const WString& ReferenceNameTable::identifierFor(const WString& name, const WString& fresh) {
    auto found = m_identifiers.find(name);
    if (found != m_identifiers.end()) {
        return found->second;
    }
    WString identifier;
    if (!m_renew && isIdentifierText(name)) {
        identifier = name;
    } else if (!fresh.empty()) {
        identifier = fresh;
    } else {
        identifier =
            Types::Factories::UID::generateUUID(Types::Factories::UID::TimeBased).toString();
    }
    return m_identifiers.emplace(name, std::move(identifier)).first->second;
}

} // namespace Vellum::XMLBuilder
