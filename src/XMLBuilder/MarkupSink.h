#ifndef VELLUM_SRC_XMLBUILDER_MARKUPSINK_H
#define VELLUM_SRC_XMLBUILDER_MARKUPSINK_H

#include "Vellum/XMLBuilder/Export.h"

#include <string_view>

namespace Vellum::XMLBuilder {

/// Receives an XML document as events, in document order: an element's attributes follow
/// its start and come before its first child; every start has its end. Names and values are
/// UTF-16 views that need to live only for the call. An empty namespace means none.
///
/// A namespace declaration is an attribute in "http://www.w3.org/2000/xmlns/" named
/// "xmlns:<prefix>". Attributes keep no order of their own: a sink puts them in the order of
/// their qualified names, as a DOM does, and a second attribute with the namespace and local
/// name of an earlier one replaces its value.
class VELLUM_XMLBUILDER_EXPORT MarkupSink {
public:
    MarkupSink() = default;
    MarkupSink(const MarkupSink&) = delete;
    MarkupSink& operator=(const MarkupSink&) = delete;
    virtual ~MarkupSink();

    virtual void startElement(std::u16string_view namespaceURI,
                              std::u16string_view qualifiedName) = 0;
    virtual void attribute(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                           std::u16string_view value) = 0;
    /// One text node (an empty one included: its element then has a child).
    virtual void text(std::u16string_view value) = 0;
    virtual void endElement() = 0;
};

} // namespace Vellum::XMLBuilder

#endif
