#ifndef VELLUM_XMLBUILDER_REFERENCENAMETABLE_H
#define VELLUM_XMLBUILDER_REFERENCENAMETABLE_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/XMLBuilder/Export.h"

#include <string_view>
#include <unordered_map>

namespace Vellum::XMLBuilder {

/// Reference names of one import (a set's "rp210:InstanceUID" text, or the target named by a
/// "_REF" element) and the identifier each stands for, so that every use of one name in a
/// document gets one identifier, whichever use is read first.
///
/// A name that is itself an identifier text (16 bytes as two hexadecimal digits each, joined
/// by ".") stands for that identifier, unless the table renews identifiers; any other name
/// gets a fresh identifier. Only the names given fresh identifiers are remembered.
class VELLUM_XMLBUILDER_EXPORT ReferenceNameTable {
public:
    /// `renewIdentifiers`: give every name a fresh identifier, as for a template.
    explicit ReferenceNameTable(bool renewIdentifiers = false) noexcept
        : m_renew(renewIdentifiers) {}

    /// The identifier `name` stands for. A name met for the first time that is not kept as it
    /// is gets `*fresh`, or a new time-based UUID when `fresh` is null.
    Types::UUID identifierFor(std::u16string_view name, const Types::UUID* fresh = nullptr);

    /// Whether `text` is an identifier text: 16 bytes as two hexadecimal digits each (either
    /// case), joined by ".".
    static bool isIdentifierText(std::u16string_view text) noexcept;

private:
    std::unordered_map<WString, Types::UUID> m_identifiers;
    bool m_renew;
};

} // namespace Vellum::XMLBuilder

#endif
