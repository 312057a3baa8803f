#ifndef VELLUM_METADATA_METADATADIFFERENCE_H
#define VELLUM_METADATA_METADATADIFFERENCE_H

#include "Vellum/Core/Export.h"
#include "Vellum/Templates/Templates.h"

#include <cstdint>

namespace Vellum::Metadata {

/// One way in which the header metadata of two partitions differ, as
/// `HeaderMetadataComparison::compare` finds it: which set (or dark metadata set), which
/// element, and the old and new value as text.
struct VELLUM_CORE_EXPORT MetadataDifference {
    /// What differs.
    enum class Kind : std::uint8_t {
        SetAdded,       ///< a set only the second partition has
        SetRemoved,     ///< a set only the first partition has
        SetKeyChanged,  ///< the same set stored under another key (old and new key)
        ItemAdded,      ///< an item only the second partition's set has (new value)
        ItemRemoved,    ///< an item only the first partition's set has (old value)
        ItemChanged,    ///< an item whose stored bytes differ (old and new value)
        DarkSetAdded,   ///< a dark metadata set only the second partition has (new value)
        DarkSetRemoved, ///< a dark metadata set only the first partition has (old value)
    };

    /// Lower-case words for `kind` ("set added", "item changed" ...).
    static const char* kindName(Kind kind) noexcept;

    Kind kind = Kind::SetAdded;
    /// The set's name: its dictionary XML tag name, or its key (dotted hex) for a set the
    /// dictionary does not know and for a dark metadata set.
    WString setName;
    /// The set's instance UID (dotted hex); for a set without one, its key and its place
    /// among the sets with that key and no instance UID ("<key> #1"); empty for a dark
    /// metadata set. A second set with the same instance UID gets " #2" appended, and so on.
    WString setIdentifier;
    /// For item differences, the element's dictionary name, or its label (dotted hex) when
    /// the dictionary does not know it, or "tag " and its local tag when even the label is
    /// unknown; empty otherwise.
    WString elementName;
    /// The value before (item removed or changed, dark set removed) or the old key (set key
    /// changed), in the text form of `Types::ValueText`; raw bytes in hexadecimal where the
    /// two values' texts would be equal although their bytes are not. Empty otherwise.
    WString oldValue;
    /// The value after (item added or changed, dark set added) or the new key; as `oldValue`.
    WString newValue;
};

} // namespace Vellum::Metadata

#endif
