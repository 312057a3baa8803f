#ifndef VELLUM_SRC_XMLBUILDER_DOCUMENTLAYOUT_H
#define VELLUM_SRC_XMLBUILDER_DOCUMENTLAYOUT_H

#include "XMLBuilder/MarkupRecording.h"
#include "XMLBuilder/MarkupSink.h"

namespace Vellum::XMLBuilder {

/// Places the children of the document element: set elements, and the one
/// "groups:FloatingDarkMetadata" container, which is made when first needed and follows every
/// set element written before the last dark parsed group. Until its place is final, the
/// container's content and the set elements written after it are kept aside; everything else
/// goes straight to the document.
class DocumentLayout {
public:
    /// `root` receives the children of the document element (borrowed). With `keepsNothing`
    /// (a pass that only learns the namespaces), everything goes to `root` at once.
    DocumentLayout(MarkupSink& root, bool keepsNothing) noexcept
        : m_root(root)
        , m_keepsNothing(keepsNothing) {}

    /// Where a set element written under the document element goes now.
    MarkupSink& rootLevel() noexcept;
    /// The inside of the container, made if there is none yet.
    MarkupSink& floatingContainer() noexcept;
    /// Moves the container (made if need be) after every set element written so far; a dark
    /// parsed group is about to be written into it.
    void moveContainerToEnd();
    /// Writes the container and the set elements that follow it.
    void finish();

private:
    MarkupSink& m_root;
    bool m_keepsNothing;
    bool m_containerMade = false;
    MarkupRecording m_container; ///< the container's content
    MarkupRecording m_after;     ///< set elements that follow the container
};

} // namespace Vellum::XMLBuilder

#endif
