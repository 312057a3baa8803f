#include "XMLBuilder/NamespaceRecord.h"

#include <algorithm>

namespace Vellum::XMLBuilder {

void NamespaceRecord::enter(const WString& namespaceName, const WString& prefix) {
    m_entries.emplace(namespaceName, prefix);
}

void NamespaceRecord::enterIfPrefixUnbound(const WString& namespaceName, const WString& prefix) {
    const bool bound = std::any_of(m_entries.begin(), m_entries.end(),
                                   [&prefix](const auto& entry) { return entry.second == prefix; });
    if (!bound) {
        enter(namespaceName, prefix);
    }
}

const WString* NamespaceRecord::prefixOf(const WString& namespaceName) const noexcept {
    const auto it = m_entries.find(namespaceName);
    return it == m_entries.end() ? nullptr : &it->second;
}

WString NamespaceRecord::namespaceOf(const WString& prefix) const {
    for (const auto& [namespaceName, entryPrefix] : m_entries) {
        if (entryPrefix == prefix) {
            return namespaceName;
        }
    }
    return {};
}

} // namespace Vellum::XMLBuilder
