#include "XMLBuilder/ElementNameIndex.h"

#include "XMLBuilder/Vocabulary.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"

namespace Vellum::XMLBuilder {
namespace {

WString joined(std::u16string_view namespaceURI, std::u16string_view tagName) {
    WString key;
    key.reserve(namespaceURI.size() + 1 + tagName.size());
    key.append(namespaceURI).append(1, u':').append(tagName);
    return key;
}

} // namespace

ElementNameIndex::ElementNameIndex(const MetaMetadata::Dictionary& dictionary) {
    static const WString namespaceProperty(Vocabulary::xmlNamespaceURI);
    static const WString tagProperty(Vocabulary::xmlTagName);
    for (auto it = dictionary.metaElementBegin(); it != dictionary.metaElementEnd(); ++it) {
        const WString* space = it->second->property(namespaceProperty);
        const WString* tag = it->second->property(tagProperty);
        if (space != nullptr && tag != nullptr) {
            m_elements.emplace(joined(*space, *tag), it->second); // the first keeps it
        }
    }
}

const MetaMetadata::MetaElement* ElementNameIndex::find(std::u16string_view namespaceURI,
                                                        std::u16string_view tagName) const {
    const auto found = m_elements.find(joined(namespaceURI, tagName));
    return found != m_elements.end() ? found->second : nullptr;
}

} // namespace Vellum::XMLBuilder
