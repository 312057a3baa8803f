#ifndef VELLUM_APP_GRAPHBUILDER_H
#define VELLUM_APP_GRAPHBUILDER_H

#include <cstdint>
#include <string>

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::Types {
class UniversalLabel;
} // namespace Vellum::Types

namespace Vellum::App {

/// Draws the header metadata of a partition as a Graphviz graph in the DOT language.
///
/// Every set is a node named by its dictionary XML tag name, with the few values that identify
/// it (package name and UMID, track ID, number and kind, edit rate, duration, start timecode,
/// essence coding and picture or sound parameters of descriptors). A set the dictionary does
/// not know is a grey dashed node with its key; a dark metadata set is a grey note. Strong
/// references are solid edges, weak ones dashed; a reference to an identifier no set has
/// leads to a red "dangling" node. Dotted edges lead from each source clip to the track it
/// names (by SourcePackageID and SourceTrackID), or to the package when the track is not
/// found. Each package is drawn in a box with the sets it owns.
///
/// Every node carries the set's key and instance UID in its tooltip ("key K\nInstanceUID U",
/// which SVG viewers show on hover); statements are one a line.
class GraphBuilder {
public:
    /// What the graph shows.
    struct Options {
        /// Every set and dark metadata set; otherwise only the sets the Preface reaches through
        /// strong references (all sets when there is no Preface).
        bool allSets = false;
        /// A title drawn above the graph; none when empty.
        std::string title;
    };

    /// Draws `metadata` (borrowed; it must outlive the builder).
    GraphBuilder(const Metadata::PartitionMetadata& metadata, Options options);

    /// The graph as a DOT document (UTF-8).
    std::string build() const;

    /// `text` as a DOT quoted string, quotes included: '"' and '\' are escaped, a line end
    /// becomes a "\n" line break, other control characters become U+FFFD; other UTF-8 text is
    /// kept.
    static std::string quote(const std::string& text);

    /// A short name for a picture or sound essence coding label ("MPEG-2", "JPEG 2000",
    /// "PCM" ...), or empty when the family is not one of the common ones.
    static std::string codingName(const Types::UniversalLabel& label);

    /// The timecode of `frames` frames counted from 00:00:00:00 at `roundedBase` frames per
    /// second: "hh:mm:ss:ff", or "hh:mm:ss;ff" with drop-frame counting (30 or 60 fps bases).
    /// Negative counts and a zero base give the plain frame count.
    static std::string timecode(std::int64_t frames, std::uint16_t roundedBase, bool dropFrame);

private:
    const Metadata::PartitionMetadata& m_metadata;
    Options m_options;
};

} // namespace Vellum::App

#endif
