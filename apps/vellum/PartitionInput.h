#ifndef VELLUM_APP_PARTITIONINPUT_H
#define VELLUM_APP_PARTITIONINPUT_H

#include "Vellum/Templates/Templates.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace Vellum::DataIO::File {
class FileDataSource;
} // namespace Vellum::DataIO::File

namespace Vellum::MXF {
class MXFFile;
class PartitionPack;
} // namespace Vellum::MXF

namespace Vellum::MetaMetadata {
class Dictionary;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::App {

class ArgumentParser;
class InputFile;

/// The MXF file a command reads and the partition whose header metadata it looks at, chosen
/// by the options these commands share: "--partition header|footer|N" (default header) and
/// "--dictionary FILE" (repeatable), which adds a user dictionary file to the built-in one.
///
/// Opening reads only the partition structure; `readMetadata` reads the header metadata, so a
/// command can show the structure of a file whose header metadata turns out damaged.
class PartitionInput {
public:
    /// Header metadata read from the chosen partition.
    struct HeaderMetadata {
        std::uint64_t offset = 0; ///< absolute position of the primer pack's key
        std::uint64_t size = 0;   ///< the partition's HeaderByteCount
        std::unique_ptr<Metadata::PartitionMetadata> partition; ///< never null
    };

    /// Declares "--partition" and "--dictionary" on `parser`.
    static void declareOptions(ArgumentParser& parser);
    /// The help lines of those options.
    static std::string optionHelp();
    /// The built-in dictionary extended by every "--dictionary" file, in order; a new
    /// dictionary the caller shares. Throws IOError for a file that cannot be read or is a
    /// directory, and InvalidFormat for a faulty one; messages start with "dictionary".
    static Templates::SharedPtr<MetaMetadata::Dictionary>
    loadDictionary(const ArgumentParser& arguments);

    /// Builds the dictionary (built-in, then every "--dictionary" file in order), opens the
    /// one positional argument FILE ("-" reads standard input, see InputFile), finds its partitions
    /// and chooses the one "--partition" names. Throws UsageError for a missing or extra FILE;
    /// IOError for a file (or dictionary file) that cannot be read; InvalidFormat for a faulty
    /// dictionary file, a file that is not MXF, or a partition that does not exist or carries no
    /// header metadata; InvalidFormat/InvalidLength naming the offset for a malformed partition
    /// pack. Messages about the file start with its name.
    explicit PartitionInput(const ArgumentParser& arguments);
    PartitionInput(const PartitionInput&) = delete;
    PartitionInput& operator=(const PartitionInput&) = delete;
    ~PartitionInput();

    /// The file's name for listings: the path as given, or "standard input" for "-".
    const std::string& path() const noexcept;
    /// The size of the file in bytes.
    std::uint64_t fileSize() const noexcept;
    /// The partition structure of the file (owned here).
    const MXF::MXFFile& file() const noexcept { return *m_file; }
    /// The chosen partition, an entry of `file().partitions()`.
    const MXF::PartitionPack& partition() const noexcept { return *m_partition; }
    /// The index of the chosen partition in `file().partitions()`.
    std::size_t partitionIndex() const noexcept { return m_partitionIndex; }

    /// Reads and parses the header metadata of the chosen partition; the caller owns the
    /// result. Throws InvalidFormat/InvalidLength (naming the file and the offset) when it is
    /// missing, runs past the end of the file or is malformed, and IOError when the file
    /// cannot be read.
    HeaderMetadata readMetadata() const;

private:
    std::unique_ptr<InputFile> m_input; // before m_source: the file must outlive its reader
    Templates::SharedPtr<MetaMetadata::Dictionary> m_dictionary;
    std::unique_ptr<DataIO::File::FileDataSource> m_source;
    std::unique_ptr<MXF::MXFFile> m_file;
    const MXF::PartitionPack* m_partition = nullptr;
    std::size_t m_partitionIndex = 0;
};

} // namespace Vellum::App

#endif
