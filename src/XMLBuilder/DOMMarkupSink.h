#ifndef VELLUM_SRC_XMLBUILDER_DOMMARKUPSINK_H
#define VELLUM_SRC_XMLBUILDER_DOMMARKUPSINK_H

#include "XMLBuilder/MarkupSink.h"

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Partition2XML.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace Vellum::XMLBuilder {

/// Builds a Xerces-C DOM document from the events: the first element is the document
/// element. Xerces-C must be initialised (XMLUtils::Initializer) while the sink is used.
class VELLUM_XMLBUILDER_EXPORT DOMMarkupSink final : public MarkupSink {
public:
    DOMMarkupSink() = default;
    ~DOMMarkupSink() override;

    void startElement(std::u16string_view namespaceURI, std::u16string_view qualifiedName) override;
    void attribute(std::u16string_view namespaceURI, std::u16string_view qualifiedName,
                   std::u16string_view value) override;
    void text(std::u16string_view value) override;
    void endElement() override;

    /// The document built (null before the first element); the caller owns it.
    DocumentNodePtr release() noexcept;

private:
    /// `text` zero-terminated, in one of the scratch strings (valid until it is reused).
    const XMLCh* terminated(WString& scratch, std::u16string_view text);

    DocumentNodePtr m_document;
    xercesc::DOMElement* m_current = nullptr;
    WString m_scratch[3];
};

} // namespace Vellum::XMLBuilder

#endif
