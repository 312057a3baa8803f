#ifndef VELLUM_XMLUTILS_SERIALIZEOPTIONS_H
#define VELLUM_XMLUTILS_SERIALIZEOPTIONS_H

namespace Vellum::XMLUtils {

/// How XML text is laid out, by the DOM serialiser and by the streaming export alike.
struct SerializeOptions {
    bool prettyPrint = true;    ///< indent nested elements, one per line
    bool xmlDeclaration = true; ///< start with <?xml version="1.0" encoding="..."?>
};

} // namespace Vellum::XMLUtils

#endif
