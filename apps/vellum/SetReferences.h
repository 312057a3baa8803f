#ifndef VELLUM_APP_SETREFERENCES_H
#define VELLUM_APP_SETREFERENCES_H

#include "Vellum/Types/UUID.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Vellum::Metadata {
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::App {

/// The references to other sets that one set holds, in the order its elements are stored.
class SetReferences {
public:
    /// One reference.
    struct Reference {
        std::string element;               ///< the element's name, "(unknown)" if unnamed
        std::optional<std::uint32_t> item; ///< the item index in a batch or an array
        bool weak = false;                 ///< a weak reference (else strong)
        Types::UUID target;                ///< the target's instance UID

        /// The element's name with "[item]" for an item of a batch or an array.
        std::string label() const;
    };

    /// Every reference `set` holds: single references and the items of reference batches and
    /// arrays, element by element in stored order.
    static std::vector<Reference> of(const Metadata::MetadataSet& set);
};

} // namespace Vellum::App

#endif
