#ifndef VELLUM_XMLBUILDER_NAMESPACERECORD_H
#define VELLUM_XMLBUILDER_NAMESPACERECORD_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"

#include <map>

namespace Vellum::XMLBuilder {

/// The namespaces one export uses, by namespace name, with the prefix first entered for each.
/// The export declares them all on the root element when the document is complete.
class VELLUM_XMLBUILDER_EXPORT NamespaceRecord {
public:
    using Map = std::map<WString, WString>;

    /// Enters (namespaceName, prefix) unless the namespace is already there; a later, different
    /// prefix for a namespace is ignored (first wins).
    void enter(const WString& namespaceName, const WString& prefix);
    /// Enters (namespaceName, prefix) unless some entry already has this prefix.
    void enterIfPrefixUnbound(const WString& namespaceName, const WString& prefix);
    /// The prefix entered for `namespaceName`, or nullptr.
    const WString* prefixOf(const WString& namespaceName) const noexcept;
    /// The namespace of the first entry, in namespace order, whose prefix is `prefix`; an empty
    /// string when none has it.
    WString namespaceOf(const WString& prefix) const;
    /// Every entry, in ascending order of namespace name (UTF-16 code unit order).
    const Map& entries() const noexcept { return m_entries; }

private:
    Map m_entries;
};

} // namespace Vellum::XMLBuilder

#endif
