#include "Vellum/XMLUtils/Initializer.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/XMLUtils/Document.h"

#include <xercesc/dom/DOMConfiguration.hpp>
#include <xercesc/dom/DOMError.hpp>
#include <xercesc/dom/DOMErrorHandler.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/dom/DOMLSResourceResolver.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/Wrapper4InputSource.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <memory>
#include <mutex>

namespace Vellum::XMLUtils {

namespace {

using xercesc::XMLUni;

/// Entity expansions allowed in one document. The toolkit's documents use none (the
/// predefined entities and character references do not count), so the first reference to a
/// declared entity stops the parse: neither nested-entity bombs nor one large entity used
/// many times can grow a document.
constexpr XMLSize_t entityExpansionLimit = 0;

/// Tells the parser to stop at the first error or fatal error; warnings pass.
class StopOnFirstError : public xercesc::DOMErrorHandler {
public:
    bool handleError(const xercesc::DOMError& error) override {
        return error.getSeverity() == xercesc::DOMError::DOM_SEVERITY_WARNING;
    }
};

/// Answers every external resource (DTD subset, external entity, schema) with an empty input,
/// so parsing never reads a file or the network on behalf of a document.
class EmptyResourceResolver : public xercesc::DOMLSResourceResolver {
public:
    xercesc::DOMLSInput* resolveResource(const XMLCh* /*resourceType*/,
                                         const XMLCh* /*namespaceUri*/, const XMLCh* /*publicId*/,
                                         const XMLCh* systemId, const XMLCh* /*baseURI*/) override {
        static constexpr XMLByte nothing[1] = {0};
        auto source = std::make_unique<xercesc::MemBufInputSource>(
            nothing, 0, systemId == nullptr ? u"" : systemId, false);
        // The parser releases the returned input, which deletes the source it adopted.
        auto input = std::make_unique<xercesc::Wrapper4InputSource>(source.get(), true);
        static_cast<void>(source.release()); // now owned by the wrapper
        return input.release();
    }
};

xercesc::DOMImplementation& findImplementation() {
    xercesc::DOMImplementation* found =
        xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
    if (found == nullptr) {
        found = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core LS");
    }
    if (found == nullptr) {
        VELLUM_THROW(ParseError, "Xerces-C has no DOM implementation with load and save");
    }
    return *found;
}

} // namespace

/// The objects every parser keeps pointers to; they live as long as the platform.
struct Initializer::Settings {
    explicit Settings(xercesc::DOMImplementation& dom)
        : implementation(dom) {
        security.setEntityExpansionLimit(entityExpansionLimit);
    }

    xercesc::DOMImplementation& implementation;
    StopOnFirstError errorHandler;
    EmptyResourceResolver resolver;
    xercesc::SecurityManager security;
    std::mutex creation; ///< serialises parser creation
};

Initializer& Initializer::instance() {
    static Initializer platform;
    return platform;
}

Initializer::Initializer() {
    try {
        xercesc::XMLPlatformUtils::Initialize();
    } catch (const xercesc::XMLException& error) {
        WString message;
        utf16ToWstring(error.getMessage(), message);
        VELLUM_THROW(ParseError, u"cannot initialise Xerces-C: " + message);
    }
    try {
        m_settings = std::make_unique<Settings>(findImplementation());
    } catch (...) {
        xercesc::XMLPlatformUtils::Terminate();
        throw;
    }
}

Initializer::~Initializer() {
    m_settings.reset();
    xercesc::XMLPlatformUtils::Terminate();
}

xercesc::DOMImplementation& Initializer::implementation() const noexcept {
    return m_settings->implementation;
}

ParserPtr Initializer::createParser() const {
    ParserPtr parser;
    {
        const std::lock_guard<std::mutex> lock(m_settings->creation);
        parser.reset(m_settings->implementation.createLSParser(
            xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr));
    }
    if (!parser) {
        VELLUM_THROW(ParseError, "Xerces-C could not create a parser");
    }
    xercesc::DOMConfiguration& config = *parser->getDomConfig();
    config.setParameter(XMLUni::fgDOMNamespaces, true);
    config.setParameter(XMLUni::fgDOMValidate, false);
    config.setParameter(XMLUni::fgDOMValidateIfSchema, false);
    config.setParameter(XMLUni::fgXercesSchema, false);
    config.setParameter(XMLUni::fgXercesLoadSchema, false);
    config.setParameter(XMLUni::fgXercesLoadExternalDTD, false);
    config.setParameter(XMLUni::fgXercesDisableDefaultEntityResolution, true);
    config.setParameter(XMLUni::fgXercesDoXInclude, false);
    config.setParameter(XMLUni::fgXercesContinueAfterFatalError, false);
    config.setParameter(XMLUni::fgXercesUserAdoptsDOMDocument, true);
    config.setParameter(XMLUni::fgDOMResourceResolver,
                        static_cast<const void*>(&m_settings->resolver));
    config.setParameter(XMLUni::fgXercesSecurityManager,
                        static_cast<const void*>(&m_settings->security));
    config.setParameter(XMLUni::fgDOMErrorHandler,
                        static_cast<const void*>(&m_settings->errorHandler));
    return parser;
}

} // namespace Vellum::XMLUtils
