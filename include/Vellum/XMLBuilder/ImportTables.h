#ifndef VELLUM_XMLBUILDER_IMPORTTABLES_H
#define VELLUM_XMLBUILDER_IMPORTTABLES_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/ReferenceNameTable.h"

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

} // namespace Vellum::XMLBuilder

#endif
