#include "XMLBuilder/MarkupRecording.h"

namespace Vellum::XMLBuilder {

MarkupRecording::~MarkupRecording() = default;

std::size_t MarkupRecording::keep(std::u16string_view text) {
    m_text.append(text);
    return text.size();
}

void MarkupRecording::startElement(std::u16string_view namespaceURI,
                                   std::u16string_view qualifiedName) {
    Event event{Kind::Start, m_text.size()};
    event.lengths[0] = keep(namespaceURI);
    event.lengths[1] = keep(qualifiedName);
    m_events.push_back(event);
}

void MarkupRecording::attribute(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                                std::u16string_view value) {
    Event event{Kind::Attribute, m_text.size()};
    event.lengths[0] = keep(namespaceURI);
    event.lengths[1] = keep(qualifiedName);
    event.lengths[2] = keep(value);
    m_events.push_back(event);
}

void MarkupRecording::text(std::u16string_view value) {
    Event event{Kind::Text, m_text.size()};
    event.lengths[0] = keep(value);
    m_events.push_back(event);
}

void MarkupRecording::endElement() {
    m_events.push_back(Event{Kind::End});
}

void MarkupRecording::replayInto(MarkupSink& sink) {
    const std::u16string_view all(m_text);
    for (const Event& event : m_events) {
        const std::u16string_view a = all.substr(event.first, event.lengths[0]);
        const std::u16string_view b = all.substr(event.first + event.lengths[0], event.lengths[1]);
        const std::u16string_view c =
            all.substr(event.first + event.lengths[0] + event.lengths[1], event.lengths[2]);
        switch (event.kind) {
        case Kind::Start:
            sink.startElement(a, b);
            break;
        case Kind::Attribute:
            sink.attribute(a, b, c);
            break;
        case Kind::Text:
            sink.text(a);
            break;
        case Kind::End:
            sink.endElement();
            break;
        }
    }
    m_events.clear();
    m_text.clear();
}

} // namespace Vellum::XMLBuilder
