#ifndef VELLUM_SRC_XMLBUILDER_NULLMARKUPSINK_H
#define VELLUM_SRC_XMLBUILDER_NULLMARKUPSINK_H

#include "XMLBuilder/MarkupSink.h"

namespace Vellum::XMLBuilder {

/// A sink that drops every event.
class NullMarkupSink final : public MarkupSink {
public:
    void startElement(std::u16string_view, std::u16string_view) override {}
    void attribute(std::u16string_view, std::u16string_view, std::u16string_view) override {}
    void text(std::u16string_view) override {}
    void endElement() override {}
};

} // namespace Vellum::XMLBuilder

#endif
