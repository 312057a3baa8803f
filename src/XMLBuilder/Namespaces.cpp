#include "Vellum/XMLBuilder/Namespaces.h"

#include "XMLBuilder/Vocabulary.h"

namespace Vellum::XMLBuilder {

const XMLUtils::UnicodeString& getNamespaceURI() {
    static const XMLUtils::UnicodeString uri{WString(Vocabulary::s377mNamespace)};
    return uri;
}

const XMLUtils::UnicodeString& getPrefix() {
    static const XMLUtils::UnicodeString prefix{WString(Vocabulary::s377mPrefix)};
    return prefix;
}

} // namespace Vellum::XMLBuilder
