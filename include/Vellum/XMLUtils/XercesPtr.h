#ifndef VELLUM_XMLUTILS_XERCESPTR_H
#define VELLUM_XMLUTILS_XERCESPTR_H

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMLSParser.hpp>
#include <xercesc/dom/DOMLSSerializer.hpp>
#include <xercesc/dom/DOMXPathNSResolver.hpp>
#include <xercesc/dom/DOMXPathResult.hpp>

#include <memory>

namespace Vellum::XMLUtils {

/// Deleter for Xerces-C objects that are released rather than deleted.
struct ReleaseDeleter {
    template <class T>
    void operator()(T* object) const noexcept {
        if (object != nullptr) {
            object->release();
        }
    }
};

/// Single owners of the Xerces-C objects the toolkit makes.
using DocumentPtr = std::unique_ptr<xercesc::DOMDocument, ReleaseDeleter>;
using ParserPtr = std::unique_ptr<xercesc::DOMLSParser, ReleaseDeleter>;
using SerializerPtr = std::unique_ptr<xercesc::DOMLSSerializer, ReleaseDeleter>;
using XPathResultPtr = std::unique_ptr<xercesc::DOMXPathResult, ReleaseDeleter>;
using XPathNSResolverPtr = std::unique_ptr<xercesc::DOMXPathNSResolver, ReleaseDeleter>;

} // namespace Vellum::XMLUtils

#endif
