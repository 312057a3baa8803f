#ifndef VELLUM_XMLUTILS_UNICODESTRING_H
#define VELLUM_XMLUTILS_UNICODESTRING_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLUtils/Export.h"

#include <xercesc/util/XercesDefs.hpp>

#include <cstddef>
#include <string>

namespace Vellum::XMLUtils {

/// An owned UTF-16 string in the form Xerces-C takes (zero-terminated XMLCh), for XML names,
/// namespaces and text.
class VELLUM_XMLUTILS_EXPORT UnicodeString {
public:
    UnicodeString() = default;
    /// From UTF-8 (or ASCII) text; a null pointer gives an empty string.
    explicit UnicodeString(const char* text);
    /// From zero-terminated UTF-16 text; a null pointer gives an empty string.
    explicit UnicodeString(const XMLCh* text);
    explicit UnicodeString(WString text) noexcept;

    /// The text as a zero-terminated UTF-16 array, valid while this string lives unchanged.
    const XMLCh* utf16() const noexcept { return m_text.c_str(); }
    /// The text as a zero-terminated wide-character array (UTF-32 on this platform; a lone
    /// surrogate becomes U+FFFD), made on the first call and valid while this string lives
    /// unchanged. The first call on one string must not race with another call on it.
    const wchar_t* wchar() const;
    /// The length in UTF-16 code units.
    std::size_t utf16Size() const noexcept { return m_text.size(); }
    /// The text as the toolkit's wide string.
    const WString& wstring() const noexcept { return m_text; }
    /// The text as UTF-8.
    std::string utf8() const;

    friend bool operator==(const UnicodeString& a, const UnicodeString& b) noexcept {
        return a.m_text == b.m_text;
    }
    friend bool operator!=(const UnicodeString& a, const UnicodeString& b) noexcept {
        return a.m_text != b.m_text;
    }
    friend bool operator<(const UnicodeString& a, const UnicodeString& b) noexcept {
        return a.m_text < b.m_text;
    }

private:
    WString m_text;
    mutable std::wstring m_wide;
};

} // namespace Vellum::XMLUtils

#endif
