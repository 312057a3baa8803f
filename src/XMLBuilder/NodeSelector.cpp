#include "Vellum/XMLBuilder/NodeSelector.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Utils/StringConversion.h"

#include <string>

namespace Vellum::XMLBuilder {
namespace {

// The selections walk the children directly and select exactly what XPath evaluation of
// "./prefix:name" selects: the prefix resolved through the declarations in scope, the first
// match in document order, and the namespace error for an unbound prefix.

const WString& noNamespace() {
    static const WString empty;
    return empty;
}

WString decimal(std::uint32_t value) {
    return Utils::stringToWstring(std::to_string(value));
}

} // namespace

const WString& NodeSelector::selectedNamespace(const XMLNode& context, std::u16string_view prefix,
                                               const WString* fallbackNamespace) {
    if (prefix.empty()) {
        return noNamespace();
    }
    if (const WString* space = context.lookupNamespace(prefix)) {
        return *space;
    }
    if (fallbackNamespace == nullptr) {
        throw Exceptions::ParseError(
            u"DOMException:: attempt is made to create or change an object in a way which is "
            u"incorrect with respect to namespaces(14): the prefix '" +
                WString(prefix) + u"' is not bound at " + context.qualifiedName() + u", line " +
                decimal(context.line()) + u", column " + decimal(context.column()),
            "Vellum/XMLBuilder/NodeSelector", __LINE__);
    }
    return *fallbackNamespace;
}

const XMLNode* NodeSelector::firstNamed(const XMLNode& context, std::u16string_view namespaceURI,
                                        std::u16string_view localName) noexcept {
    for (const XMLNode& child : context.children()) {
        if (isNamed(child, namespaceURI, localName)) {
            return &child;
        }
    }
    return nullptr;
}

const XMLNode* NodeSelector::firstChild(const XMLNode& context, std::u16string_view prefix,
                                        std::u16string_view localName,
                                        const WString* fallbackNamespace) {
    return firstNamed(context, selectedNamespace(context, prefix, fallbackNamespace), localName);
}

} // namespace Vellum::XMLBuilder
