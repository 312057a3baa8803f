#ifndef VELLUM_SRC_XMLBUILDER_MARKUPRECORDING_H
#define VELLUM_SRC_XMLBUILDER_MARKUPRECORDING_H

#include "XMLBuilder/MarkupSink.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Vellum::XMLBuilder {

/// Keeps events to give them to another sink later, for the parts of a document that are
/// written before the place they go to is known.
class MarkupRecording final : public MarkupSink {
public:
    MarkupRecording() = default;
    ~MarkupRecording() override;

    void startElement(std::u16string_view namespaceURI, std::u16string_view qualifiedName) override;
    void attribute(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                   std::u16string_view value) override;
    void text(std::u16string_view value) override;
    void endElement() override;

    /// Gives `sink` every event kept, in order, and forgets them.
    void replayInto(MarkupSink& sink);
    bool empty() const noexcept { return m_events.empty(); }

private:
    enum class Kind : std::uint8_t { Start, Attribute, Text, End };
    struct Event {
        Kind kind;
        std::size_t first = 0; ///< offset in m_text of the first of its strings
        std::size_t lengths[3] = {0, 0, 0};
    };

    std::size_t keep(std::u16string_view text);

    std::vector<Event> m_events;
    std::u16string m_text;
};

} // namespace Vellum::XMLBuilder

#endif
