#ifndef VELLUM_XMLUTILS_UTILS_H
#define VELLUM_XMLUTILS_UTILS_H

#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLUtils/Document.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMLSException.hpp>
#include <xercesc/dom/DOMXPathException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/UTFDataFormatException.hpp>
#include <xercesc/util/XMLException.hpp>

#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <memory>
#include <string>
#include <typeinfo>

/// @file
/// Translation of the exceptions Xerces-C raises into the toolkit's ParseError.

namespace Vellum::XMLUtils {

/// Source name recorded in a ParseError translated from a Xerces-C exception.
inline constexpr const char* translatedErrorSource = "Vellum/XMLUtils/Utils";
/// Line recorded in a ParseError translated from a Xerces-C exception.
inline constexpr unsigned translatedErrorLine = 207;

/// The demangled name of `type` (e.g. "xercesc_3_2::SAXException") as UTF-16; the raw name
/// when it cannot be demangled. Throws nothing but std::bad_alloc.
inline WString demangledTypeName(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return ::Vellum::Utils::stringToWstring(status == 0 && name ? name.get() : type.name());
}

/// The text of a Xerces-C message (null gives empty).
inline WString xercesMessage(const XMLCh* text) {
    WString out;
    utf16ToWstring(text, out);
    return out;
}

/// "<prefix>: <message>(<code>)": the layout of a translated DOM exception.
inline WString domStyleMessage(const char16_t* prefix, const xercesc::DOMException& error) {
    return WString(prefix) + u": " + xercesMessage(error.getMessage()) + u"(" +
           ::Vellum::Utils::stringToWstring(std::to_string(error.code)) + u")";
}

/// The message a DOMXPathException translates to: "DOMXPathException:: <message>(<code>)".
inline WString domXPathExceptionMessage(const xercesc::DOMXPathException& error) {
    return domStyleMessage(u"DOMXPathException:", error);
}

/// The message a DOMException translates to: "DOMException:: <message>(<code>)".
inline WString domExceptionMessage(const xercesc::DOMException& error) {
    return domStyleMessage(u"DOMException:", error);
}

/// The message a DOMLSException (a failed load or save) translates to:
/// "xercesc_3_2::DOMLSException: <message>(<code>)".
inline WString domLSExceptionMessage(const xercesc::DOMLSException& error) {
    return domStyleMessage(demangledTypeName(typeid(xercesc::DOMLSException)).c_str(), error);
}

/// "<class name>: <message>", the layout of the other translated Xerces-C exceptions, where
/// the class name is that of `Caught`, the class the handler catches.
template <class Caught>
WString classStyleMessage(const Caught& error) {
    return demangledTypeName(typeid(Caught)) + u": " + xercesMessage(error.getMessage());
}

/// Rethrows the exception being handled, translated into the toolkit's exceptions. Call it only
/// inside a `catch (...)` block. Xerces-C DOM, DOM load/save, XPath, SAX and platform
/// exceptions become Exceptions::ParseError located at translatedErrorSource and
/// translatedErrorLine; toolkit exceptions pass unchanged; anything else becomes a ParseError
/// "Unknown error in Xerces or XQilla" located at `entrySource`, `entryLine`. Called with no
/// exception in flight, it throws a ParseError saying so.
[[noreturn]] inline void rethrowTranslated(const char* entrySource, unsigned entryLine) {
    if (!std::current_exception()) {
        throw Exceptions::ParseError(WString(u"rethrowTranslated called with no exception"),
                                     entrySource, entryLine);
    }
    const char* const source = translatedErrorSource;
    const unsigned line = translatedErrorLine;
    try {
        throw;
    } catch (const xercesc::DOMXPathException& error) {
        throw Exceptions::ParseError(domXPathExceptionMessage(error), source, line);
    } catch (const xercesc::DOMLSException& error) {
        throw Exceptions::ParseError(domLSExceptionMessage(error), source, line);
    } catch (const xercesc::DOMException& error) {
        throw Exceptions::ParseError(domExceptionMessage(error), source, line);
    } catch (const xercesc::UTFDataFormatException& error) {
        throw Exceptions::ParseError(classStyleMessage(error), source, line);
    } catch (const xercesc::SAXException& error) {
        throw Exceptions::ParseError(classStyleMessage(error), source, line);
    } catch (const xercesc::XMLException& error) {
        throw Exceptions::ParseError(classStyleMessage(error), source, line);
    } catch (const Exceptions::BaseException&) {
        throw;
    } catch (...) {
        throw Exceptions::ParseError(WString(u"Unknown error in Xerces or XQilla"), entrySource,
                                     entryLine);
    }
}

} // namespace Vellum::XMLUtils

#endif
