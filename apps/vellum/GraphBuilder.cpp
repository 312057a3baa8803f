#include "GraphBuilder.h"

#include "SetReferences.h"

#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/Boolean.h"
#include "Vellum/Types/Int16.h"
#include "Vellum/Types/Int32.h"
#include "Vellum/Types/Int64.h"
#include "Vellum/Types/Int8.h"
#include "Vellum/Types/Length.h"
#include "Vellum/Types/Position.h"
#include "Vellum/Types/Rational.h"
#include "Vellum/Types/StringRepresentation.h"
#include "Vellum/Types/UInt16.h"
#include "Vellum/Types/UInt32.h"
#include "Vellum/Types/UInt64.h"
#include "Vellum/Types/UInt8.h"
#include "Vellum/Types/UMID32.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/Types/ValueText.h"
#include "Vellum/Utils/StringConversion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

namespace Vellum::App {
namespace {

using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using Label = std::array<std::uint8_t, 16>;

// The elements whose values the nodes show, by label (byte 8, the registry version, is not
// compared when they are looked up).
namespace Elements {
constexpr Label packageUID{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                           0x01, 0x01, 0x15, 0x10, 0x00, 0x00, 0x00, 0x00};
constexpr Label packageName{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                            0x01, 0x03, 0x03, 0x02, 0x01, 0x00, 0x00, 0x00};
constexpr Label trackID{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                        0x01, 0x07, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00};
constexpr Label trackNumber{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                            0x01, 0x04, 0x01, 0x03, 0x00, 0x00, 0x00, 0x00};
constexpr Label trackName{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                          0x01, 0x07, 0x01, 0x02, 0x01, 0x00, 0x00, 0x00};
constexpr Label trackSequence{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                              0x06, 0x01, 0x01, 0x04, 0x02, 0x04, 0x00, 0x00};
constexpr Label editRate{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                         0x05, 0x30, 0x04, 0x05, 0x00, 0x00, 0x00, 0x00};
constexpr Label dataDefinition{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                               0x04, 0x07, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00};
constexpr Label duration{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                         0x07, 0x02, 0x02, 0x01, 0x01, 0x03, 0x00, 0x00};
constexpr Label sourcePackageID{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                                0x06, 0x01, 0x01, 0x03, 0x01, 0x00, 0x00, 0x00};
constexpr Label sourceTrackID{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                              0x06, 0x01, 0x01, 0x03, 0x02, 0x00, 0x00, 0x00};
constexpr Label roundedTimecodeBase{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                                    0x04, 0x04, 0x01, 0x01, 0x02, 0x06, 0x00, 0x00};
constexpr Label startTimecode{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                              0x07, 0x02, 0x01, 0x03, 0x01, 0x05, 0x00, 0x00};
constexpr Label dropFrame{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                          0x04, 0x04, 0x01, 0x01, 0x05, 0x00, 0x00, 0x00};
constexpr Label pictureEssenceCoding{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                                     0x04, 0x01, 0x06, 0x01, 0x00, 0x00, 0x00, 0x00};
constexpr Label soundEssenceCoding{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                                   0x04, 0x02, 0x04, 0x02, 0x00, 0x00, 0x00, 0x00};
constexpr Label storedWidth{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                            0x04, 0x01, 0x05, 0x02, 0x02, 0x00, 0x00, 0x00};
constexpr Label storedHeight{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                             0x04, 0x01, 0x05, 0x02, 0x01, 0x00, 0x00, 0x00};
constexpr Label sampleRate{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01,
                           0x04, 0x06, 0x01, 0x01, 0x00, 0x00, 0x00, 0x00};
constexpr Label audioSamplingRate{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x05,
                                  0x04, 0x02, 0x03, 0x01, 0x01, 0x01, 0x00, 0x00};
constexpr Label channelCount{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x05,
                             0x04, 0x02, 0x01, 0x01, 0x04, 0x00, 0x00, 0x00};
constexpr Label quantizationBits{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x04,
                                 0x04, 0x02, 0x03, 0x03, 0x04, 0x00, 0x00, 0x00};
constexpr Label linkedTrackID{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x05,
                              0x06, 0x01, 0x01, 0x03, 0x05, 0x00, 0x00, 0x00};
constexpr Label operationalPattern{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x05,
                                   0x01, 0x02, 0x02, 0x03, 0x00, 0x00, 0x00, 0x00};
constexpr Label productName{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                            0x05, 0x20, 0x07, 0x01, 0x03, 0x01, 0x00, 0x00};
constexpr Label definitionName{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                               0x01, 0x07, 0x01, 0x02, 0x03, 0x01, 0x00, 0x00};
constexpr Label metaDefinitionName{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                                   0x03, 0x02, 0x04, 0x01, 0x02, 0x01, 0x00, 0x00};
constexpr Label taggedValueName{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x02,
                                0x03, 0x02, 0x01, 0x02, 0x09, 0x01, 0x00, 0x00};
constexpr Label bodySID{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x04,
                        0x01, 0x03, 0x04, 0x04, 0x00, 0x00, 0x00, 0x00};
constexpr Label indexSID{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x04,
                         0x01, 0x03, 0x04, 0x05, 0x00, 0x00, 0x00, 0x00};
} // namespace Elements

// Text longer than this is cut in a node, so that one long name does not widen the graph.
constexpr std::size_t maxValueCharacters = 36;
// Lists of strong references longer than this are spread over several columns, and in the
// default view cut short after their first few items.
constexpr std::size_t maxColumnLength = 8;
constexpr std::size_t maxListLength = 8;
constexpr std::size_t shortListLength = 4;
// The fewest trailing bytes of a UMID that a node shows (of its material number).
constexpr std::size_t minUmidTailBytes = 4;

const Types::SimpleDataType* simpleValue(const MetadataSet& set, const Label& label) {
    const auto* element =
        dynamic_cast<const Metadata::SimpleElement*>(set.findElement(Types::UniversalLabel(label)));
    return element != nullptr ? element->value() : nullptr;
}

template <class T>
const T* valueOf(const MetadataSet& set, const Label& label) {
    return dynamic_cast<const T*>(simpleValue(set, label));
}

// The value of an integer element of any width, or nothing.
std::optional<std::int64_t> integer(const MetadataSet& set, const Label& label) {
    const Types::SimpleDataType* value = simpleValue(set, label);
    std::optional<std::int64_t> result;
    const auto tryType = [&](auto* typed) {
        using T = std::remove_const_t<std::remove_pointer_t<decltype(typed)>>;
        if (!result) {
            if (const auto* found = dynamic_cast<const T*>(value)) {
                result = static_cast<std::int64_t>(found->value());
            }
        }
    };
    tryType(static_cast<const Types::UInt8*>(nullptr));
    tryType(static_cast<const Types::UInt16*>(nullptr));
    tryType(static_cast<const Types::UInt32*>(nullptr));
    tryType(static_cast<const Types::UInt64*>(nullptr));
    tryType(static_cast<const Types::Int8*>(nullptr));
    tryType(static_cast<const Types::Int16*>(nullptr));
    tryType(static_cast<const Types::Int32*>(nullptr));
    tryType(static_cast<const Types::Int64*>(nullptr));
    tryType(static_cast<const Types::Length*>(nullptr));
    tryType(static_cast<const Types::Position*>(nullptr));
    return result;
}

std::string cut(std::string text) {
    // Count characters, not bytes, and never split a UTF-8 sequence.
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U &&
            ++characters > maxValueCharacters) {
            return text.substr(0, i) + "\xE2\x80\xA6"; // "…"
        }
    }
    return text;
}

// The text of a value as `ValueText` gives it, cut to fit a node.
std::string valueText(const MetadataSet& set, const Label& label) {
    const Types::SimpleDataType* value = simpleValue(set, label);
    return value != nullptr ? cut(Utils::wstringToString(Types::ValueText::format(*value)))
                            : std::string();
}

std::string rationalText(const Types::Rational& rational) {
    return std::to_string(rational.numerator()) + "/" + std::to_string(rational.denominator());
}

std::string umidTail(const Types::UMID32& umid, std::size_t count) {
    const std::uint8_t* tail = umid.data() + Types::UMID32::byteCount - count;
    return "\xE2\x80\xA6" + Utils::wstringToString(
                                Types::StringRepresentation::format(tail, count, Types::DottedHex));
}

// The fewest trailing bytes (at least minUmidTailBytes, at most the 16 of the material
// number) that tell the UMIDs of `packages` apart.
std::size_t distinctTail(const std::vector<Types::UMID32::Bytes>& packages) {
    constexpr std::size_t materialNumber = 16;
    for (std::size_t count = minUmidTailBytes; count < materialNumber; ++count) {
        std::set<std::vector<std::uint8_t>> tails;
        std::set<Types::UMID32::Bytes> distinct;
        for (const Types::UMID32::Bytes& umid : packages) {
            if (distinct.insert(umid).second) {
                tails.emplace(umid.end() - static_cast<std::ptrdiff_t>(count), umid.end());
            }
        }
        if (tails.size() == distinct.size()) {
            return count;
        }
    }
    return materialNumber;
}

// The kind of essence or metadata a data definition label names, or empty.
std::string dataKind(const Types::UniversalLabel& label) {
    const auto& b = label.bytes();
    if (b[0] != 0x06 || b[1] != 0x0E || b[2] != 0x2B || b[3] != 0x34 || b[8] != 0x01 ||
        b[9] != 0x03 || b[10] != 0x02) {
        return {};
    }
    if (b[11] == 0x02) {
        switch (b[12]) {
        case 0x01:
            return "picture";
        case 0x02:
            return "sound";
        case 0x03:
            return "data";
        default:
            return {};
        }
    }
    if (b[11] == 0x01) {
        return b[12] == 0x10 ? "descriptive" : (b[12] >= 0x01 && b[12] <= 0x03 ? "timecode" : "");
    }
    return {};
}

// "OP1a" ... "OP3c", "OPAtom", or empty for another label.
std::string operationalPatternName(const Types::UniversalLabel& label) {
    const auto& b = label.bytes();
    if (b[0] != 0x06 || b[1] != 0x0E || b[2] != 0x2B || b[3] != 0x34 || b[8] != 0x0D ||
        b[9] != 0x01 || b[10] != 0x02 || b[11] != 0x01) {
        return {};
    }
    if (b[12] == 0x10) {
        return "OPAtom";
    }
    if (b[12] >= 0x01 && b[12] <= 0x03 && b[13] >= 0x01 && b[13] <= 0x03) {
        return "OP" + std::to_string(b[12]) + static_cast<char>('a' + b[13] - 1);
    }
    return {};
}

// The name of a set for its node: the dictionary's XML tag name.
std::string setName(const MetadataSet& set) {
    const MetaMetadata::MetaMetadataSet* definition = set.definition();
    if (definition == nullptr) {
        return "unknown set";
    }
    const WString* tag = definition->property(u"XMLTagName");
    return Utils::wstringToString(tag != nullptr && !tag->empty() ? *tag : definition->name());
}

// The category a node's colour tells.
enum class Category { Other, Package, Track, Component, Descriptor, Descriptive, Unknown };

Category categoryOf(const MetadataSet& set, const std::string& name) {
    const auto endsWith = [&name](const char* suffix) {
        const std::string text(suffix);
        return name.size() >= text.size() &&
               name.compare(name.size() - text.size(), text.size(), text) == 0;
    };
    if (set.definition() == nullptr) {
        return Category::Unknown;
    }
    if (simpleValue(set, Elements::packageUID) != nullptr) {
        return Category::Package;
    }
    if (simpleValue(set, Elements::trackID) != nullptr || endsWith("Track")) {
        return Category::Track;
    }
    if (!set.definition()->isStructural()) {
        return Category::Descriptive;
    }
    if (endsWith("Descriptor")) {
        return Category::Descriptor;
    }
    if (simpleValue(set, Elements::dataDefinition) != nullptr) {
        return Category::Component;
    }
    return Category::Other;
}

const char* fillColour(Category category) {
    switch (category) {
    case Category::Package:
        return "#cfe2ff";
    case Category::Track:
        return "#fff3cd";
    case Category::Component:
        return "#f8f9fa";
    case Category::Descriptor:
        return "#d1e7dd";
    case Category::Descriptive:
        return "#e2d9f3";
    case Category::Unknown:
        return "#eeeeee";
    case Category::Other:
        break;
    }
    return "#e9ecef";
}

// Draws one graph: the sets chosen, their references and the source clip links.
class Drawing {
public:
    Drawing(const PartitionMetadata& metadata, const GraphBuilder::Options& options)
        : m_metadata(metadata)
        , m_options(options) {
        chooseSets();
        indexPackages();
    }

    std::string dot() {
        m_out << "digraph HeaderMetadata {\n"
              << "  graph [rankdir=LR, ordering=out, fontname=\"Helvetica\", fontsize=12, "
                 "nodesep=0.15, ranksep=0.5, labelloc=t, labeljust=l];\n"
              << "  node [shape=box, style=\"rounded,filled\", fontname=\"Helvetica\", "
                 "fontsize=10, margin=\"0.08,0.03\", fillcolor=\"#e9ecef\"];\n"
              << "  edge [fontname=\"Helvetica\", fontsize=8, arrowsize=0.6, color=\"#555555\"];\n";
        const std::string title = titleText();
        if (!title.empty()) {
            m_out << "  label=" << GraphBuilder::quote(title) << ";\n";
        }
        writeClusters();
        for (const MetadataSet* set : m_shown) {
            if (m_clusterOf.count(set) == 0) {
                writeNode(*set, "  ");
            }
        }
        if (m_options.allSets) {
            writeDarkSets();
        }
        for (const MetadataSet* set : m_shown) {
            writeReferences(*set);
        }
        for (const MetadataSet* set : m_shown) {
            writeSourceLink(*set);
        }
        writeCollapsedLists();
        m_out << "}\n";
        return m_out.str();
    }

private:
    void chooseSets() {
        const PartitionMetadata::SetList& sets = m_metadata.sets();
        for (std::size_t i = 0; i < sets.size(); ++i) {
            m_ids[sets[i]] = "s" + std::to_string(i);
        }
        std::vector<const MetadataSet*> order;
        const unsigned notReached = m_metadata.calculateSerializationOrder(order, true, false);
        const std::size_t reached = order.size() - notReached;
        m_hasPreface = reached > 0;
        if (m_options.allSets || !m_hasPreface) {
            m_shown.assign(sets.begin(), sets.end());
        } else {
            const std::set<const MetadataSet*> reachable(
                order.begin(), order.begin() + static_cast<std::ptrdiff_t>(reached));
            const std::set<const MetadataSet*> chosen = chooseReached(*order.front(), reachable);
            // Keep the stored order, which follows the writer's own layout of the tree.
            for (const MetadataSet* set : sets) {
                if (chosen.count(set) != 0) {
                    m_shown.push_back(set);
                }
            }
        }
        m_isShown.insert(m_shown.begin(), m_shown.end());
    }

    // The sets `preface` reaches through strong references, of those in `reachable`, leaving
    // out the items of a long list after its first few (and what only they reach); the lists
    // cut short are kept in m_collapsed.
    std::set<const MetadataSet*> chooseReached(const MetadataSet& preface,
                                               const std::set<const MetadataSet*>& reachable) {
        std::set<const MetadataSet*> chosen;
        std::vector<const MetadataSet*> pending{&preface};
        while (!pending.empty()) {
            const MetadataSet* set = pending.back();
            pending.pop_back();
            if (reachable.count(set) == 0 || !chosen.insert(set).second) {
                continue;
            }
            const std::vector<SetReferences::Reference> references = SetReferences::of(*set);
            const std::map<std::string, std::size_t> lengths = strongListLengths(references);
            for (const SetReferences::Reference& reference : references) {
                const MetadataSet* found = reference.weak ? nullptr : target(reference.target);
                if (found == nullptr) {
                    continue;
                }
                if (reference.item && *reference.item >= shortListLength &&
                    lengths.at(reference.element) > maxListLength) {
                    m_collapsed[{set, reference.element}].push_back(found);
                } else {
                    pending.push_back(found);
                }
            }
        }
        return chosen;
    }

    // The number of strong references each element of a set holds.
    static std::map<std::string, std::size_t>
    strongListLengths(const std::vector<SetReferences::Reference>& references) {
        std::map<std::string, std::size_t> lengths;
        for (const SetReferences::Reference& reference : references) {
            if (!reference.weak) {
                ++lengths[reference.element];
            }
        }
        return lengths;
    }

    void indexPackages() {
        std::vector<Types::UMID32::Bytes> all;
        for (const MetadataSet* set : m_metadata.sets()) {
            if (const auto* uid = valueOf<Types::UMID32>(*set, Elements::packageUID)) {
                all.push_back(uid->bytes());
                if (m_isShown.count(set) != 0) {
                    m_packages.emplace(uid->bytes(), set);
                }
            }
        }
        m_umidTail = distinctTail(all);
    }

    // The first set that has the instance UID, or null.
    const MetadataSet* target(const Types::UUID& uid) const {
        const PartitionMetadata::SetList& targets = m_metadata.findByInstanceUID(uid);
        return targets.empty() ? nullptr : targets.front();
    }

    // The set the single reference element `label` of `set` names, or null.
    const MetadataSet* referenced(const MetadataSet& set, const Label& label) const {
        const auto* element = dynamic_cast<const Metadata::ReferenceElement*>(
            set.findElement(Types::UniversalLabel(label)));
        return element != nullptr && element->value() != nullptr ? target(element->value()->uuid())
                                                                 : nullptr;
    }

    std::string titleText() const {
        std::string title = m_options.title;
        const std::size_t hidden = m_metadata.sets().size() - m_shown.size();
        const std::size_t dark = m_options.allSets ? 0 : m_metadata.darkCount();
        if (!m_hasPreface) {
            title += std::string(title.empty() ? "" : "\n") + "no Preface: every set is shown";
        } else if (hidden > 0 || dark > 0) {
            title += std::string(title.empty() ? "" : "\n") +
                     "not shown: " + std::to_string(hidden) +
                     " set(s) the Preface does not reach, " + std::to_string(dark) +
                     " dark metadata set(s) (--all-sets shows them)";
        }
        return title;
    }

    // Each package with the sets it reaches through strong references goes in a box of its
    // own; a set reached from two packages stays in the first one's box.
    void writeClusters() {
        std::size_t cluster = 0;
        for (const MetadataSet* set : m_shown) {
            if (simpleValue(*set, Elements::packageUID) == nullptr || m_clusterOf.count(set) != 0) {
                continue;
            }
            std::vector<const MetadataSet*> members;
            collectOwned(*set, cluster, members);
            m_out << "  subgraph cluster_" << cluster << " {\n"
                  << "    style=\"rounded\"; color=\"#9ec5fe\"; label=\"\";\n";
            for (const MetadataSet* member : members) {
                writeNode(*member, "    ");
            }
            m_out << "  }\n";
            ++cluster;
        }
    }

    void collectOwned(const MetadataSet& package, std::size_t cluster,
                      std::vector<const MetadataSet*>& members) {
        std::vector<const MetadataSet*> pending{&package};
        while (!pending.empty()) {
            const MetadataSet* set = pending.back();
            pending.pop_back();
            if (m_isShown.count(set) == 0 || !m_clusterOf.emplace(set, cluster).second) {
                continue;
            }
            members.push_back(set);
            const std::vector<SetReferences::Reference> references = SetReferences::of(*set);
            // Backwards, so that the first reference is taken first.
            for (auto reference = references.rbegin(); reference != references.rend();
                 ++reference) {
                const MetadataSet* owned = reference->weak ? nullptr : target(reference->target);
                // Another package is a box of its own, never part of this one.
                if (owned != nullptr && simpleValue(*owned, Elements::packageUID) == nullptr) {
                    pending.push_back(owned);
                }
            }
        }
    }

    void writeNode(const MetadataSet& set, const char* indent) {
        const std::string name = setName(set);
        const Category category = categoryOf(set, name);
        std::vector<std::string> lines = describe(set, name);
        std::string label;
        for (const std::string& line : lines) {
            label += (label.empty() ? "" : "\n") + line;
        }
        const Types::UUID* uid = set.instanceUID();
        const std::string tooltip =
            "key " + set.key().toUtf8() + "\nInstanceUID " +
            (uid != nullptr ? Utils::wstringToString(uid->toString()) : "-");
        m_out << indent << m_ids.at(&set) << " [label=" << GraphBuilder::quote(label)
              << ", tooltip=" << GraphBuilder::quote(tooltip) << ", fillcolor=\""
              << fillColour(category) << '"';
        if (isDefinition(set)) {
            // Dictionaries and meta-dictionaries hold hundreds of these: smaller boxes.
            m_out << ", fontsize=8, height=0.2";
        }
        if (category == Category::Unknown) {
            m_out << ", style=\"rounded,dashed,filled\", color=\"#888888\", fontcolor=\"#555555\"";
        } else if (category == Category::Package) {
            m_out << ", penwidth=1.5";
        }
        m_out << "];\n";
    }

    // Whether `set` is an entry of a dictionary or meta-dictionary (it has a definition name).
    static bool isDefinition(const MetadataSet& set) {
        return simpleValue(set, Elements::definitionName) != nullptr ||
               simpleValue(set, Elements::metaDefinitionName) != nullptr;
    }

    // The lines of a node: the set's name, then the values that identify it.
    std::vector<std::string> describe(const MetadataSet& set, const std::string& name) const {
        std::vector<std::string> lines{name};
        if (set.definition() == nullptr) {
            lines.push_back(set.key().toUtf8());
            return lines;
        }
        const auto add = [&lines](const std::string& label, const std::string& value) {
            if (!value.empty()) {
                lines.push_back(label.empty() ? value : label + " " + value);
            }
        };
        const auto number = [&set](const Label& label) {
            const std::optional<std::int64_t> value = integer(set, label);
            return value ? std::to_string(*value) : std::string();
        };
        const auto rational = [&set](const Label& label) {
            const auto* value = valueOf<Types::Rational>(set, label);
            return value != nullptr ? rationalText(*value) : std::string();
        };
        lines.front() += kindSuffix(set);
        if (const auto* pattern =
                valueOf<Types::UniversalLabel>(set, Elements::operationalPattern)) {
            add("", operationalPatternName(*pattern));
        }
        add("", valueText(set, Elements::productName));
        add("", valueText(set, Elements::packageName));
        add("", valueText(set, Elements::definitionName));
        add("", valueText(set, Elements::metaDefinitionName));
        add("", valueText(set, Elements::taggedValueName));
        if (const auto* umid = valueOf<Types::UMID32>(set, Elements::packageUID)) {
            add("UMID", umidTail(*umid, m_umidTail));
        }
        add("TrackID", number(Elements::trackID));
        // Track number 0 (no essence element) is left out, as most tracks of a material
        // package have it.
        if (const std::optional<std::int64_t> trackNumber = integer(set, Elements::trackNumber);
            trackNumber && *trackNumber != 0) {
            char text[24];
            std::snprintf(text, sizeof text, "0x%08llX",
                          static_cast<unsigned long long>(*trackNumber));
            add("TrackNumber", text);
        }
        add("", valueText(set, Elements::trackName));
        add("EditRate", rational(Elements::editRate));
        add("Duration", number(Elements::duration));
        add("Start", timecodeText(set));
        if (const auto* source = valueOf<Types::UMID32>(set, Elements::sourcePackageID)) {
            const bool none = std::all_of(source->bytes().begin(), source->bytes().end(),
                                          [](std::uint8_t byte) { return byte == 0; });
            add("SourcePackage", none ? "none" : umidTail(*source, m_umidTail));
            if (!none) {
                add("SourceTrackID", number(Elements::sourceTrackID));
            }
        }
        add("Coding", codingText(set, Elements::pictureEssenceCoding));
        add("Coding", codingText(set, Elements::soundEssenceCoding));
        const std::string width = number(Elements::storedWidth);
        const std::string height = number(Elements::storedHeight);
        if (!width.empty() || !height.empty()) {
            add("Stored", (width.empty() ? "?" : width) + "x" + (height.empty() ? "?" : height));
        }
        add("SampleRate", rational(Elements::sampleRate));
        add("AudioSamplingRate", rational(Elements::audioSamplingRate));
        add("ChannelCount", number(Elements::channelCount));
        add("QuantizationBits", number(Elements::quantizationBits));
        add("LinkedTrackID", number(Elements::linkedTrackID));
        add("BodySID", number(Elements::bodySID));
        add("IndexSID", number(Elements::indexSID));
        return lines;
    }

    // " (picture)" and the like: a track's kind is its sequence's data definition.
    std::string kindSuffix(const MetadataSet& set) const {
        const MetadataSet* source = &set;
        if (simpleValue(set, Elements::trackID) != nullptr) {
            source = referenced(set, Elements::trackSequence);
        }
        const auto* definition =
            source != nullptr ? valueOf<Types::UniversalLabel>(*source, Elements::dataDefinition)
                              : nullptr;
        const std::string kind = definition != nullptr ? dataKind(*definition) : std::string();
        return kind.empty() ? kind : " (" + kind + ")";
    }

    static std::string timecodeText(const MetadataSet& set) {
        const std::optional<std::int64_t> start = integer(set, Elements::startTimecode);
        const std::optional<std::int64_t> base = integer(set, Elements::roundedTimecodeBase);
        if (!start) {
            return {};
        }
        const auto* drop = valueOf<Types::Boolean>(set, Elements::dropFrame);
        const auto rounded =
            static_cast<std::uint16_t>(base && *base > 0 && *base <= 0xFFFF ? *base : 0);
        std::string text =
            GraphBuilder::timecode(*start, rounded, drop != nullptr && drop->value());
        return rounded > 0 ? text + " @" + std::to_string(rounded) : text;
    }

    static std::string codingText(const MetadataSet& set, const Label& label) {
        const auto* coding = valueOf<Types::UniversalLabel>(set, label);
        if (coding == nullptr) {
            return {};
        }
        const std::string name = GraphBuilder::codingName(*coding);
        return name.empty() ? Utils::wstringToString(coding->toString()) : name;
    }

    void writeDarkSets() {
        std::size_t index = 0;
        for (auto dark = m_metadata.darkBegin(); dark != m_metadata.darkEnd(); ++dark, ++index) {
            const std::string key = (*dark)->key().toUtf8();
            const std::string label = "dark metadata set\n" + key.substr(0, 23) + "\n" +
                                      key.substr(24) + "\n" +
                                      std::to_string((*dark)->value()->size()) + " bytes";
            m_out << "  d" << index << " [label=" << GraphBuilder::quote(label)
                  << ", tooltip=" << GraphBuilder::quote("key " + key)
                  << ", shape=note, style=\"dashed,filled\", fillcolor=\"#eeeeee\", "
                     "color=\"#888888\", fontcolor=\"#555555\"];\n";
        }
    }

    void writeReferences(const MetadataSet& set) {
        const std::vector<SetReferences::Reference> references = SetReferences::of(set);
        std::map<std::string, std::size_t> perElement;
        for (const SetReferences::Reference& reference : references) {
            ++perElement[reference.element];
        }
        // Graphviz puts the first out-edge of a left-to-right graph lowest: writing them
        // backwards draws the references top down in stored order.
        for (auto item = references.rbegin(); item != references.rend(); ++item) {
            const SetReferences::Reference& reference = *item;
            const MetadataSet* found = target(reference.target);
            std::string to;
            if (found == nullptr) {
                to = danglingNode(reference.target);
            } else if (m_isShown.count(found) != 0) {
                to = m_ids.at(found);
            } else {
                continue;
            }
            m_out << "  " << m_ids.at(&set) << " -> " << to
                  << " [style=" << (reference.weak ? "dashed" : "solid");
            // A long list would make one column as tall as the list: its targets are spread
            // over a few columns instead, as Graphviz's unflatten does.
            const std::size_t count = perElement[reference.element];
            if (count > maxColumnLength && reference.item && !reference.weak &&
                m_collapsed.count({&set, reference.element}) == 0) {
                const auto columns = static_cast<std::size_t>(
                    std::ceil(std::sqrt(static_cast<double>(count) / maxColumnLength)));
                m_out << ", minlen=" << 1 + *reference.item % std::max<std::size_t>(columns, 2);
            }
            m_out << ", tooltip=" << GraphBuilder::quote(reference.label()) << "];\n";
        }
    }

    // One node per list cut short, standing for the items left out.
    void writeCollapsedLists() {
        std::size_t index = 0;
        for (const auto& [where, targets] : m_collapsed) {
            std::map<std::string, std::size_t> byName;
            std::size_t hidden = 0;
            for (const MetadataSet* set : targets) {
                if (m_isShown.count(set) == 0) {
                    ++hidden;
                    ++byName[setName(*set)];
                }
            }
            if (hidden == 0) {
                continue;
            }
            std::string label = "+ " + std::to_string(hidden) + " more";
            for (const auto& [name, count] : byName) {
                label += "\n" + std::to_string(count) + " " + name;
            }
            const std::string id = "m" + std::to_string(index++);
            m_out << "  " << id << " [label=" << GraphBuilder::quote(label) << ", tooltip="
                  << GraphBuilder::quote(where.second + ": the other items and what they "
                                                        "reach are drawn with --all-sets")
                  << ", style=\"rounded,dashed\", fontcolor=\"#555555\"];\n"
                  << "  " << m_ids.at(where.first) << " -> " << id
                  << " [style=solid, color=\"#999999\", tooltip="
                  << GraphBuilder::quote(where.second) << "];\n";
        }
    }

    std::string danglingNode(const Types::UUID& uid) {
        const auto found = m_dangling.find(uid);
        if (found != m_dangling.end()) {
            return found->second;
        }
        const std::string id = "x" + std::to_string(m_dangling.size());
        m_dangling.emplace(uid, id);
        const std::string text = Utils::wstringToString(uid.toString());
        m_out << "  " << id << " [label=" << GraphBuilder::quote("dangling\n" + text)
              << ", tooltip=" << GraphBuilder::quote("no set has InstanceUID " + text)
              << ", shape=plaintext, style=\"\", fontcolor=\"#cc0000\"];\n";
        return id;
    }

    // A dotted edge from a source clip to the track it names, or to the package when the
    // package holds no track with that ID.
    void writeSourceLink(const MetadataSet& set) {
        const auto* source = valueOf<Types::UMID32>(set, Elements::sourcePackageID);
        if (source == nullptr) {
            return;
        }
        const auto package = m_packages.find(source->bytes());
        if (package == m_packages.end()) {
            return;
        }
        const std::optional<std::int64_t> trackID = integer(set, Elements::sourceTrackID);
        const MetadataSet* to = package->second;
        for (const SetReferences::Reference& reference : SetReferences::of(*package->second)) {
            const MetadataSet* track = target(reference.target);
            if (track != nullptr && trackID && m_isShown.count(track) != 0 &&
                integer(*track, Elements::trackID) == trackID) {
                to = track;
                break;
            }
        }
        m_out << "  " << m_ids.at(&set) << " -> " << m_ids.at(to)
              << " [style=dotted, color=\"#0d6efd\", constraint=false, tooltip="
              << GraphBuilder::quote(to == package->second ? "SourcePackageID"
                                                           : "SourcePackageID, SourceTrackID")
              << "];\n";
    }

    const PartitionMetadata& m_metadata;
    const GraphBuilder::Options& m_options;
    std::ostringstream m_out;
    bool m_hasPreface = false;
    std::size_t m_umidTail = minUmidTailBytes;
    std::vector<const MetadataSet*> m_shown;
    std::set<const MetadataSet*> m_isShown;
    std::map<const MetadataSet*, std::string> m_ids;
    std::map<const MetadataSet*, std::size_t> m_clusterOf;
    std::map<Types::UMID32::Bytes, const MetadataSet*> m_packages;
    std::map<Types::UUID, std::string> m_dangling;
    // The lists cut short in the default view, by set and element, with all their targets.
    std::map<std::pair<const MetadataSet*, std::string>, std::vector<const MetadataSet*>>
        m_collapsed;
};

} // namespace

GraphBuilder::GraphBuilder(const Metadata::PartitionMetadata& metadata, Options options)
    : m_metadata(metadata)
    , m_options(std::move(options)) {}

std::string GraphBuilder::build() const {
    return Drawing(m_metadata, m_options).dot();
}

std::string GraphBuilder::quote(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (c == '\n') {
            quoted += "\\n";
        } else if (byte < 0x20 || byte == 0x7F) {
            quoted += "\xEF\xBF\xBD"; // U+FFFD
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

std::string GraphBuilder::codingName(const Types::UniversalLabel& label) {
    const auto& b = label.bytes();
    if (b[0] != 0x06 || b[1] != 0x0E || b[2] != 0x2B || b[3] != 0x34 || b[4] != 0x04 ||
        b[8] != 0x04 || b[10] != 0x02) {
        return {};
    }
    if (b[9] == 0x01 && b[11] == 0x01) {
        return "uncompressed";
    }
    if (b[9] == 0x01 && b[11] == 0x02) {
        switch (b[12]) {
        case 0x01:
            if (b[13] == 0x02 && b[14] == 0x01) {
                return "D-10 MPEG-2";
            }
            if (b[13] >= 0x01 && b[13] <= 0x09) {
                return "MPEG-2";
            }
            if (b[13] == 0x10) {
                return "MPEG-1";
            }
            if (b[13] == 0x20) {
                return "MPEG-4 Visual";
            }
            if ((b[13] & 0xF0U) == 0x30) {
                return "H.264/AVC";
            }
            return (b[13] & 0xF0U) == 0x40 ? "H.265/HEVC" : "";
        case 0x02:
            return "DV";
        case 0x03:
            switch (b[13]) {
            case 0x01:
                return "JPEG 2000";
            case 0x03:
                return "VC-2";
            case 0x06:
                return "ProRes";
            case 0x07:
                return "DNxUncompressed";
            case 0x08:
                return "JPEG XS";
            case 0x09:
                return "FFV1";
            default:
                return {};
            }
        case 0x70:
            return "D-11";
        case 0x71:
            return "VC-3 (DNxHD)";
        case 0x72:
            return "VC-1";
        default:
            return {};
        }
    }
    if (b[9] == 0x02 && b[11] == 0x01) {
        return b[12] == 0x7E ? "PCM (AIFF)" : "PCM";
    }
    if (b[9] == 0x02 && b[11] == 0x02 && b[12] == 0x03) {
        if (b[13] == 0x01) {
            return b[14] == 0x10 ? "DV audio" : "A-law";
        }
        if (b[13] == 0x02) {
            return b[14] == 0x01 ? "AC-3" : (b[14] == 0x1C ? "Dolby E" : "ST 337 audio");
        }
        return b[13] == 0x03 ? "AAC" : "";
    }
    if (b[9] == 0x02 && b[11] == 0x02 && b[12] == 0x04) {
        return b[13] >= 0x03 ? "AAC" : "MPEG audio";
    }
    return {};
}

std::string GraphBuilder::timecode(std::int64_t frames, std::uint16_t roundedBase, bool dropFrame) {
    if (frames < 0 || roundedBase == 0) {
        return std::to_string(frames);
    }
    const std::int64_t base = roundedBase;
    // Drop-frame counting skips the first frame numbers of every minute but each tenth: two
    // at 30 fps, four at 60 fps.
    const std::int64_t drop = dropFrame && base % 30 == 0 ? base / 15 : 0;
    if (drop > 0) {
        const std::int64_t perTenMinutes = base * 600 - drop * 9;
        const std::int64_t perMinute = base * 60 - drop;
        const std::int64_t tens = frames / perTenMinutes;
        const std::int64_t rest = frames % perTenMinutes;
        frames += drop * 9 * tens + (rest > drop ? drop * ((rest - drop) / perMinute) : 0);
    }
    const std::int64_t seconds = frames / base;
    char text[48];
    std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld%c%02lld",
                  static_cast<long long>(seconds / 3600), static_cast<long long>(seconds / 60 % 60),
                  static_cast<long long>(seconds % 60), drop > 0 ? ';' : ':',
                  static_cast<long long>(frames % base));
    return text;
}

} // namespace Vellum::App
