#ifndef VELLUM_TEMPLATES_TEMPLATES_H
#define VELLUM_TEMPLATES_TEMPLATES_H

#include <list>
#include <memory>
#include <string>
#include <vector>

/// @file
/// The toolkit's container and string vocabulary, mapped onto the standard library.

namespace Vellum {

/// The toolkit's text type: UTF-16 code units. Every name, identifier text and message is one.
using WString = std::u16string;

namespace Templates {

/// Single owner; passing one by value hands the object over.
template <class T>
using auto_ptr = std::unique_ptr<T>;

/// Tag kept for the name of the shared owner: the standard shared pointer counts atomically.
struct LockedCounter {};

/// Shared owner with an atomically counted reference count.
template <class T, class Counter = LockedCounter>
using SharedPtr = std::shared_ptr<T>;

template <class T>
using list = std::list<T>;

template <class T>
using vector = std::vector<T>;

/// A string of 16-bit units.
template <class CharT = char16_t>
using basic_string = std::basic_string<CharT>;

} // namespace Templates
} // namespace Vellum

#endif
