#include "XMLBuilder/DocumentLayout.h"

#include "XMLBuilder/Vocabulary.h"

namespace Vellum::XMLBuilder {

MarkupSink& DocumentLayout::rootLevel() noexcept {
    return m_containerMade && !m_keepsNothing ? m_after : m_root;
}

MarkupSink& DocumentLayout::floatingContainer() noexcept {
    m_containerMade = true;
    return m_keepsNothing ? m_root : m_container;
}

void DocumentLayout::moveContainerToEnd() {
    m_containerMade = true;
    if (!m_keepsNothing) {
        m_after.replayInto(m_root);
    }
}

void DocumentLayout::finish() {
    if (m_keepsNothing || !m_containerMade) {
        return;
    }
    m_root.startElement(Vocabulary::groupsNamespace, Vocabulary::floatingDarkMetadata);
    m_container.replayInto(m_root);
    m_root.endElement();
    m_after.replayInto(m_root);
}

} // namespace Vellum::XMLBuilder
