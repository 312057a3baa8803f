#ifndef VELLUM_SRC_METADATA_REFERENCEWALKER_H
#define VELLUM_SRC_METADATA_REFERENCEWALKER_H

#include <functional>

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::Metadata::detail {

/// Walks the sets reached from a start set through references, depth first, in the order of
/// each set's elements. Iterative, so hostile chains of any depth cannot exhaust the stack.
class ReferenceWalker {
public:
    /// With `followWeak`, weak references are followed as well as strong ones.
    ReferenceWalker(const PartitionMetadata& partition, bool followWeak) noexcept
        : m_partition(partition)
        , m_followWeak(followWeak) {}

    /// Calls `visit` for `start` and each set reached; a set is entered (its references
    /// followed) only when `visit` returns true, which also guards against cycles.
    void walk(const MetadataSet& start, const std::function<bool(const MetadataSet&)>& visit) const;

private:
    const PartitionMetadata& m_partition;
    bool m_followWeak;
};

} // namespace Vellum::Metadata::detail

#endif
