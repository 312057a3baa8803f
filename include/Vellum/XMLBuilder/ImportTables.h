#ifndef VELLUM_XMLBUILDER_IMPORTTABLES_H
#define VELLUM_XMLBUILDER_IMPORTTABLES_H

#include "Vellum/Templates/Templates.h"

#include <map>

namespace Vellum::MetaMetadata {
class MetaMetadataSet;
} // namespace Vellum::MetaMetadata

/// @file
/// The two tables one import shares among all its readers.

namespace Vellum::XMLBuilder {

/// XML local name ("XMLTagName") to the dictionary set it names; where two sets share a name,
/// the first in key order. The sets are borrowed from the partition's dictionary.
using SetTagTable = std::map<WString, const MetaMetadata::MetaMetadataSet*>;

/// Reference name (a set's "rp210:InstanceUID" text, or the target named by a "_REF" element)
/// to the identifier text given to it, so that every use of one name in a document gets one
/// identifier, whichever use is read first.
using ReferenceNameTable = std::map<WString, WString>;

} // namespace Vellum::XMLBuilder

#endif
