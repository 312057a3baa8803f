#include "PartitionInput.h"

#include "ArgumentParser.h"
#include "ErrorPrefix.h"
#include "InputFile.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MXF/MXFFile.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace Vellum::App {

Templates::SharedPtr<MetaMetadata::Dictionary>
PartitionInput::loadDictionary(const ArgumentParser& arguments) {
    auto dictionary = MetaMetadata::Dictionary::builtIn();
    for (const std::string& path : arguments.values("dictionary")) {
        std::error_code ignored;
        if (std::filesystem::is_directory(path, ignored)) {
            VELLUM_THROW(IOError, "dictionary '" + path + "' is a directory, not a file");
        }
        try {
            dictionary->loadFile(path);
        } catch (const Exceptions::BaseException& error) {
            ErrorPrefix::rethrow(error, "dictionary: ");
        }
    }
    return dictionary;
}

void PartitionInput::declareOptions(ArgumentParser& parser) {
    parser.addValueOption("partition");
    parser.addRepeatableOption("dictionary");
}

std::string PartitionInput::optionHelp() {
    return "  --partition P      the partition whose header metadata is read: header (the\n"
           "                     default), footer, or an index from 0 as 'vellum info' lists\n"
           "  --dictionary FILE  add the definitions of a dictionary file to the built-in\n"
           "                     ones; may be given more than once\n";
}

PartitionInput::PartitionInput(const ArgumentParser& arguments) {
    arguments.requirePositionals(1, 1, "FILE");
    const std::string which = arguments.value("partition").value_or("header");
    m_dictionary = loadDictionary(arguments);
    m_input = std::make_unique<InputFile>(arguments.positionals().front());
    m_source = std::make_unique<DataIO::File::FileDataSource>(m_input->path());
    try {
        m_file = std::make_unique<MXF::MXFFile>(*m_source);
        m_partition = &m_file->choosePartition(which);
    } catch (const Exceptions::BaseException& error) {
        ErrorPrefix::rethrow(error, m_input->quotedName() + ": ");
    }
    m_partitionIndex = static_cast<std::size_t>(m_partition - m_file->partitions().data());
}

PartitionInput::~PartitionInput() = default;

const std::string& PartitionInput::path() const noexcept {
    return m_input->name();
}

std::uint64_t PartitionInput::fileSize() const noexcept {
    return m_source->size();
}

PartitionInput::HeaderMetadata PartitionInput::readMetadata() const {
    HeaderMetadata result;
    try {
        const MXF::HeaderMetadataBytes bytes = m_file->readHeaderMetadata(*m_partition);
        result.offset = bytes.offset;
        result.size = bytes.bytes.size();
        result.partition = Metadata::PartitionMetadata::read(
            {bytes.bytes.data(), bytes.bytes.size()}, bytes.offset, m_dictionary);
    } catch (const Exceptions::BaseException& error) {
        ErrorPrefix::rethrow(error, m_input->quotedName() + ": ");
    }
    return result;
}

} // namespace Vellum::App
