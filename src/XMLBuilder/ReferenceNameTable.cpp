#include "Vellum/XMLBuilder/ReferenceNameTable.h"

#include "Vellum/Types/Factories/UID.h"

namespace Vellum::XMLBuilder {
namespace {

int hexDigit(char16_t c) noexcept {
    if (c >= u'0' && c <= u'9') {
        return c - u'0';
    }
    if (c >= u'a' && c <= u'f') {
        return c - u'a' + 10;
    }
    if (c >= u'A' && c <= u'F') {
        return c - u'A' + 10;
    }
    return -1;
}

bool isHexDigit(char16_t c) noexcept {
    return hexDigit(c) >= 0;
}

/// The identifier an identifier text stands for.
Types::UUID identifierOf(std::u16string_view text) noexcept {
    Types::UUID::Bytes bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] =
            static_cast<std::uint8_t>(hexDigit(text[3 * i]) * 16 + hexDigit(text[3 * i + 1]));
    }
    return Types::UUID(bytes);
}

} // namespace

bool ReferenceNameTable::isIdentifierText(std::u16string_view text) noexcept {
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

Types::UUID ReferenceNameTable::identifierFor(std::u16string_view name, const Types::UUID* fresh) {
    if (!m_renew && isIdentifierText(name)) {
        // The same name always reads as the same identifier: nothing to remember.
        return identifierOf(name);
    }
    WString key(name);
    const auto found = m_identifiers.find(key);
    if (found != m_identifiers.end()) {
        return found->second;
    }
    const Types::UUID identifier =
        fresh != nullptr ? *fresh
                         : Types::Factories::UID::generateUUID(Types::Factories::UID::TimeBased);
    m_identifiers.emplace(std::move(key), identifier);
    return identifier;
}

} // namespace Vellum::XMLBuilder
