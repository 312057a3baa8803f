#ifndef VELLUM_XMLUTILS_INITIALIZER_H
#define VELLUM_XMLUTILS_INITIALIZER_H

#include "Vellum/XMLUtils/Export.h"
#include "Vellum/XMLUtils/XercesPtr.h"

#include <xercesc/dom/DOMImplementation.hpp>

#include <memory>

namespace Vellum::XMLUtils {

/// Brings up the XML platform (Xerces-C) once per process and keeps it up until the process
/// ends. `instance()` is safe to call from any thread. Every Xerces-C object (documents,
/// parsers, serialisers) must be gone before static destruction ends the platform, so none
/// may live in static storage.
class VELLUM_XMLUTILS_EXPORT Initializer {
public:
    Initializer(const Initializer&) = delete;
    Initializer& operator=(const Initializer&) = delete;

    /// The process-wide instance; the first call initialises Xerces-C. Throws
    /// Exceptions::ParseError when Xerces-C cannot be initialised (a later call tries again).
    static Initializer& instance();

    /// A new DOM load-and-save parser, configured for untrusted input: namespaces on, no
    /// validation, no external DTD or schema loading, every external entity answered with
    /// empty text (nothing read from disk or network), no declared entity expanded, and
    /// documents adopted by the caller (see loadDocumentFromFile/Buffer). The parser stops at
    /// the first error, but Xerces-C's `parse` then returns the partial document without
    /// throwing: use loadDocumentFromFile/Buffer, which turn the error into an exception and
    /// also refuse documents that declare entities or nest too deeply. The caller owns the
    /// parser; use one parser per thread. Safe to call from any thread. Throws
    /// Exceptions::ParseError if Xerces-C cannot make a parser.
    ParserPtr createParser() const;

    /// The DOM implementation registered under "LS", for creating documents, serialisers and
    /// outputs. Owned by Xerces-C; valid while the platform is up.
    xercesc::DOMImplementation& implementation() const noexcept;

private:
    Initializer();
    ~Initializer();

    struct Settings;
    std::unique_ptr<Settings> m_settings; ///< objects every parser points at
};

} // namespace Vellum::XMLUtils

#endif
