#ifndef VELLUM_APP_XMLOUTPUT_H
#define VELLUM_APP_XMLOUTPUT_H

#include "Vellum/XMLUtils/EncodingType.h"

#include <cstdint>
#include <iosfwd>
#include <string>

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::App {

class ArgumentParser;

/// How a command writes header metadata as XML, chosen by the options the XML-writing
/// commands share: "--typed-references", "--structural-only", "--encoding utf-8|utf-16"
/// (default utf-8) and "--compact" (default: indented, one element per line).
class XmlOutput {
public:
    /// Declares the options above on `parser`.
    static void declareOptions(ArgumentParser& parser);
    /// The help lines of those options.
    static std::string optionHelp();

    /// Reads the options from parsed `arguments`. Throws UsageError for an encoding other than
    /// utf-8 or utf-16.
    explicit XmlOutput(const ArgumentParser& arguments);

    /// The XML document of `partition`'s header metadata, started from its first Preface, as
    /// the bytes of a file in the chosen encoding (UTF-16 little-endian with a byte order
    /// mark), written as the partition is walked. `source` names where the metadata came
    /// from, for messages. Throws InvalidFormat "'<source>': the header metadata has no
    /// Preface" when there is none, and InvalidFormat when the dictionary names a set or
    /// element with something that is no XML name.
    std::string render(const Metadata::PartitionMetadata& partition,
                       const std::string& source) const;

    /// The encoding chosen.
    XMLUtils::EncodingType encoding() const noexcept { return m_encoding; }

private:
    bool m_typedReferences = false;
    bool m_structuralOnly = false;
    bool m_compact = false;
    XMLUtils::EncodingType m_encoding = XMLUtils::EncodingType::UTF8;
};

} // namespace Vellum::App

#endif
