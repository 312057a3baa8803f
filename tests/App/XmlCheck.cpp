#include "XmlCheck.h"

#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"
#include "Vellum/XMLUtils/Utils.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include <cstdint>
#include <string_view>

namespace VellumTest {

using namespace Vellum;

XmlSummary summariseXml(const std::string& bytes) {
    XmlSummary summary;
    try {
        const XMLUtils::ParserPtr parser = XMLUtils::Initializer::instance().createParser();
        const XMLUtils::DocumentPtr document = XMLUtils::loadDocumentFromBuffer(
            reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), *parser);
        const xercesc::DOMElement* root = document->getDocumentElement();
        summary.rootName = Utils::wstringToString(std::u16string_view(root->getNodeName()));
        XMLUtils::cleanEmptyTextNodes(document.get());
        XMLUtils::domToBytes(document.get(), summary.canonical, XMLUtils::EncodingType::UTF8,
                             XMLUtils::SerializeOptions{false, false});
    } catch (...) {
        XMLUtils::rethrowTranslated(__FILE__, __LINE__);
    }
    return summary;
}

} // namespace VellumTest
