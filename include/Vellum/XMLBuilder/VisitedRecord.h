#ifndef VELLUM_XMLBUILDER_VISITEDRECORD_H
#define VELLUM_XMLBUILDER_VISITEDRECORD_H

#include <unordered_set>

namespace Vellum::Metadata {
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// The sets already written in one pass of an export, so that each is written once.
using VisitedRecord = std::unordered_set<const Metadata::MetadataSet*>;

} // namespace Vellum::XMLBuilder

#endif
