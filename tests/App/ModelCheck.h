#ifndef VELLUM_TESTS_APP_MODELCHECK_H
#define VELLUM_TESTS_APP_MODELCHECK_H

#include "Support/AppCorpus.h"

#include "Vellum/Metadata/PartitionMetadata.h"

#include <memory>
#include <string>
#include <vector>

/// @file
/// What the library reads from a file, for the tests that compare the program's listings and
/// graphs with it.

namespace VellumTest {

/// The header metadata of the header partition of `path`, with the built-in dictionary.
std::unique_ptr<Vellum::Metadata::PartitionMetadata> readModel(const std::string& path);

/// The instance UID of `set` in dotted hex, or "-" when it has none.
std::string uidText(const Vellum::Metadata::MetadataSet& set);

/// One reference a set holds, by the instance UIDs of the two sets.
struct ModelReference {
    std::string from;
    std::string to;
    bool weak = false;

    bool operator<(const ModelReference& other) const;
    bool operator==(const ModelReference& other) const;
};

/// Every reference of every set (single ones and the items of batches and arrays), walked
/// with the element visitor.
std::vector<ModelReference> referencesOf(const Vellum::Metadata::PartitionMetadata& metadata);

/// Whether Graphviz's `dot` program can be run.
bool hasGraphviz();

} // namespace VellumTest

#endif
