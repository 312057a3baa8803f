#ifndef VELLUM_XMLBUILDER_REFERENCENAMETABLE_H
#define VELLUM_XMLBUILDER_REFERENCENAMETABLE_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"

#include <map>

namespace Vellum::XMLBuilder {

/// Reference names of one import (a set's "rp210:InstanceUID" text, or the target named by a
/// "_REF" element) and the identifier text each stands for, so that every use of one name in
/// a document gets one identifier, whichever use is read first.
///
/// A name that is itself an identifier text (16 bytes as two hexadecimal digits each, joined
/// by ".") stands for that identifier, unless the table renews identifiers; any other name
/// gets a fresh identifier.
class VELLUM_XMLBUILDER_EXPORT ReferenceNameTable {
public:
    /// `renewIdentifiers`: give every name a fresh identifier, as for a template.
    explicit ReferenceNameTable(bool renewIdentifiers = false) noexcept
        : m_renew(renewIdentifiers) {}

    /// The identifier text `name` stands for. A name met for the first time that is not kept
    /// as it is gets `fresh`, or a new time-based UUID when `fresh` is empty.
    const WString& identifierFor(const WString& name, const WString& fresh = WString());

    /// Whether `text` is an identifier text: 16 bytes as two hexadecimal digits each (either
    /// case), joined by ".".
    static bool isIdentifierText(const WString& text) noexcept;

private:
    std::map<WString, WString> m_identifiers;
    bool m_renew;
};

} // namespace Vellum::XMLBuilder

#endif
