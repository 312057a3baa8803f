#ifndef VELLUM_XMLBUILDER_NAMESPACES_H
#define VELLUM_XMLBUILDER_NAMESPACES_H

#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLUtils/UnicodeString.h"

namespace Vellum::XMLBuilder {

/// The namespace of the document's root element, "urn:SMPTE:S377M". Built on first use and
/// kept until the library is unloaded.
VELLUM_XMLBUILDER_EXPORT const XMLUtils::UnicodeString& getNamespaceURI();

/// The prefix of the document's root element, "s377m".
VELLUM_XMLBUILDER_EXPORT const XMLUtils::UnicodeString& getPrefix();

} // namespace Vellum::XMLBuilder

#endif
