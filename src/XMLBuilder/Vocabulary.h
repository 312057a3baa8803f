#ifndef VELLUM_XMLBUILDER_VOCABULARY_H
#define VELLUM_XMLBUILDER_VOCABULARY_H

/// @file
/// The fixed names of the XML header metadata document: namespaces with their prefixes, and
/// the reserved names that the export writes and the import recognises.

namespace Vellum::XMLBuilder::Vocabulary {

// Namespaces and the prefixes always bound to them.
inline constexpr const char16_t* s377mNamespace = u"urn:SMPTE:S377M";
inline constexpr const char16_t* s377mPrefix = u"s377m";
inline constexpr const char16_t* typesNamespace = u"urn:SMPTE:Types:MXF";
inline constexpr const char16_t* typesPrefix = u"types";
inline constexpr const char16_t* s422mTypesNamespace = u"urn:SMPTE:S422MTypes:MXF";
inline constexpr const char16_t* s422mTypesPrefix = u"s422mTypes";
inline constexpr const char16_t* groupsNamespace = u"urn:SMPTE:Groups:MXF";
inline constexpr const char16_t* groupsPrefix = u"groups";
inline constexpr const char16_t* rp210Namespace = u"http://www.smpte-ra.org/rp210";
inline constexpr const char16_t* rp210Prefix = u"rp210";
inline constexpr const char16_t* xmlnsNamespace = u"http://www.w3.org/2000/xmlns/";

// Names the dictionary attaches to set and element definitions.
inline constexpr const char16_t* xmlTagName = u"XMLTagName";
inline constexpr const char16_t* xmlDefaultPrefix = u"XMLDefaultPrefix";
inline constexpr const char16_t* xmlNamespaceURI = u"XMLNamespaceURI";
inline constexpr const char16_t* schemaIndex = u"SchemaIndex";

// Reserved names of the document.
inline constexpr const char16_t* metadataSetsSuffix = u":MetadataSets";
inline constexpr const char16_t* floatingDarkMetadata = u"groups:FloatingDarkMetadata";
inline constexpr const char16_t* key = u"groups:Key";
inline constexpr const char16_t* berOctetCount = u"groups:BEROctetCount";
inline constexpr const char16_t* darkMetadata = u"DarkMetadata";
inline constexpr const char16_t* staticLocalTag = u"groups:StaticLocalTag";
inline constexpr const char16_t* universalLabel = u"groups:UniversalLabel";
inline constexpr const char16_t* extensionElements = u"groups:ExtensionElements";
inline constexpr const char16_t* refSuffix = u"_REF";
inline constexpr const char16_t* targetInstance = u"types:TargetInstance";
inline constexpr const char16_t* danglingRef = u"s377m:Dangling_REF";
inline constexpr const char16_t* multipleMetadataSets = u"MULTIPLE_METADATASETS";
inline constexpr const char16_t* darkElement = u"DarkElement";
inline constexpr const char16_t* storedBytes = u"groups:StoredBytes";
inline constexpr const char16_t* itemElement = u"Element";
inline constexpr const char16_t* instanceUID = u"rp210:InstanceUID";
inline constexpr const char16_t* generationUID = u"rp210:GenerationUID";
inline constexpr const char16_t* instanceUIDLocalName = u"InstanceUID";
inline constexpr const char16_t* generationUIDLocalName = u"GenerationUID";

} // namespace Vellum::XMLBuilder::Vocabulary

#endif
