#include "XMLBuilder/ReferenceNameTable.h"

#include "Utils/HexText.h"

#include "Vellum/Types/Factories/UID.h"

namespace Vellum::XMLBuilder {

bool ReferenceNameTable::isIdentifierText(std::u16string_view text) noexcept {
    Types::UUID::Bytes bytes{};
    return Utils::readDottedHex(text, bytes.data(), bytes.size());
}

Types::UUID ReferenceNameTable::identifierFor(std::u16string_view name, const Types::UUID* fresh) {
    Types::UUID::Bytes bytes{};
    if (!m_renew && Utils::readDottedHex(name, bytes.data(), bytes.size())) {
        // The same name always reads as the same identifier: nothing to remember.
        return Types::UUID(bytes);
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
