#include "XMLBuilder/XMLTestSupport.h"

#include "Vellum/XMLUtils/Document.h"
#include "Vellum/XMLUtils/Initializer.h"
#include "Vellum/XMLUtils/UnicodeString.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/util/XMLString.hpp>

namespace VellumTest {

using Vellum::XMLUtils::UnicodeString;

Vellum::XMLUtils::DocumentPtr makeDocument() {
    Vellum::XMLUtils::Initializer::instance();
    auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
    Vellum::XMLUtils::DocumentPtr document(
        implementation->createDocument(u"urn:test", u"test:Root", nullptr));
    auto* root = document->getDocumentElement();
    root->setAttributeNS(u"http://www.w3.org/2000/xmlns/", u"xmlns:types", u"urn:SMPTE:Types:MXF");
    root->setAttributeNS(u"http://www.w3.org/2000/xmlns/", u"xmlns:s422mTypes",
                         u"urn:SMPTE:S422MTypes:MXF");
    return document;
}

std::string serialize(const xercesc::DOMNode* node) {
    std::string out;
    Vellum::XMLUtils::SerializeOptions options;
    options.prettyPrint = false;
    options.xmlDeclaration = false;
    Vellum::XMLUtils::domToBytes(node, out, Vellum::XMLUtils::EncodingType::UTF8, options);
    while (!out.empty() && (out.back() == '\n' || out.back() == '\r')) {
        out.pop_back();
    }
    return out;
}

std::size_t countChildren(const xercesc::DOMElement& parent, const char* qualifiedName) {
    const UnicodeString name(qualifiedName);
    std::size_t count = 0;
    for (auto* child = parent.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
        count += xercesc::XMLString::equals(child->getNodeName(), name.utf16()) ? 1 : 0;
    }
    return count;
}

} // namespace VellumTest
