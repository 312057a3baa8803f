#include "XMLBuilder/ImportTables.h"

#include "XMLBuilder/ElementNameIndex.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/Element.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/Structural/StructuralMetadataULs.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/XMLBuilder/FromXMLMetaAttributeVisitor.h"
#include "Vellum/XMLBuilder/XMLNode.h"

namespace Vellum::XMLBuilder {

const Types::UniversalLabel& ImportTables::generationUIDLabel() {
    static const Types::UniversalLabel label(u"06.0E.2B.34.01.01.01.02.05.20.07.01.08.00.00.00",
                                             Types::DottedHex);
    return label;
}

ImportTables::ImportTables(const MetaMetadata::Dictionary& dictionary, bool renewIdentifiers)
    : m_dictionary(dictionary)
    , m_names(renewIdentifiers)
    , m_instanceUID(
          dictionary.findElement(Metadata::Structural::StructuralMetadataULs::instanceUID()))
    , m_generationUID(dictionary.findElement(generationUIDLabel())) {}

ImportTables::~ImportTables() = default;

const MetaMetadata::MetaMetadataSet* ImportTables::setNamed(std::u16string_view localName) const {
    return m_dictionary.findSetByTagName(localName);
}

KLV::Key ImportTables::setKeyOf(const XMLNode& element,
                                const MetaMetadata::MetaMetadataSet& definition) const {
    const XMLAttribute* text = element.attribute(Vocabulary::key);
    if (text == nullptr) {
        return definition.key();
    }
    KLV::Key key = definition.key();
    try {
        key = KLV::Key(WString(text->value), Types::DottedHex);
    } catch (const Exceptions::BaseException& e) {
        VELLUM_THROW(ParseError, u"the " + WString(Vocabulary::key) + u" of " +
                                     element.qualifiedName() + u" is not a key: " + e.message());
    }
    if (m_dictionary.findSet(KLV::withTwoByteItemLengths(key)) != &definition) {
        VELLUM_THROW(ParseError, u"the " + WString(Vocabulary::key) + u" " + key.toString() +
                                     u" of " + element.qualifiedName() +
                                     u" is not a key of that set");
    }
    return key;
}

const MetaMetadata::MetaMetadataSet* ImportTables::setNamed(const XMLName& name) {
    const auto found = m_setsByName.find(&name);
    if (found != m_setsByName.end()) {
        return found->second;
    }
    return m_setsByName.emplace(&name, setNamed(name.localName)).first->second;
}

const MetaMetadata::MetaElement* ImportTables::elementNamed(std::u16string_view namespaceURI,
                                                            std::u16string_view tagName) {
    if (!m_elements) {
        m_elements = std::make_unique<ElementNameIndex>(m_dictionary);
    }
    return m_elements->find(namespaceURI, tagName);
}

ImportTables::ElementReading ImportTables::readingOf(const Metadata::Element& element) {
    static const WString tagProperty(Vocabulary::xmlTagName);
    static const WString prefixProperty(Vocabulary::xmlDefaultPrefix);
    FromXMLMetaAttributeVisitor attribute;
    element.metaAttribute()->accept(attribute);
    ElementReading reading;
    reading.meta = attribute.metaElement();
    if (reading.meta == nullptr) {
        return reading;
    }
    reading.tagName = reading.meta->property(tagProperty);
    reading.prefix = reading.meta->property(prefixProperty);
    reading.identity =
        reading.tagName != nullptr && (*reading.tagName == Vocabulary::instanceUIDLocalName ||
                                       *reading.tagName == Vocabulary::generationUIDLocalName);
    return reading;
}

const std::vector<ImportTables::ElementReading>&
ImportTables::readingsOf(const Metadata::MetadataSet& set) {
    auto [entry, made] = m_readings.try_emplace(set.definition());
    if (made) {
        entry->second.reserve(set.validCount());
        for (const auto& [label, element] : set) {
            entry->second.push_back(readingOf(*element));
        }
    }
    return entry->second;
}

void ImportTables::keepMadeSet(const XMLNode& element, Metadata::MetadataSet& set) {
    m_madeSets[&element] = &set;
}

Metadata::MetadataSet* ImportTables::madeSet(const XMLNode& element) const {
    const auto found = m_madeSets.find(&element);
    return found != m_madeSets.end() ? found->second : nullptr;
}

Metadata::MetadataSet* ImportTables::takeMadeSet(const XMLNode& element) {
    const auto found = m_madeSets.find(&element);
    if (found == m_madeSets.end()) {
        return nullptr;
    }
    Metadata::MetadataSet* set = found->second;
    m_madeSets.erase(found);
    return set;
}

} // namespace Vellum::XMLBuilder
