#ifndef VELLUM_DATAIO_FILE_FILEDATASINK_H
#define VELLUM_DATAIO_FILE_FILEDATASINK_H

#include "Vellum/DataIO/DataSink.h"

#include <cstdio>
#include <memory>
#include <string>

namespace Vellum::DataIO::File {

/// Writes a file safely: bytes go to a temporary file beside the target, which replaces the
/// target only on `commit()`. A sink destroyed without commit removes its temporary file, so
/// a failed write never destroys an existing file. The replacement keeps the permissions of
/// the file it replaces; a symbolic link stays a link to the replaced file. A device or pipe
/// (such as /dev/null) is written in place, since it cannot be replaced.
class VELLUM_CORE_EXPORT FileDataSink : public DataSink {
public:
    /// Creates the temporary file for `path` (UTF-8); throws IOError if it cannot.
    explicit FileDataSink(std::string path);
    ~FileDataSink() override;

    void write(const std::uint8_t* bytes, std::uint64_t count) override;
    std::uint64_t position() const override { return m_written; }

    /// Flushes, closes and moves the file into place; throws IOError on failure.
    void commit();

private:
    struct Closer {
        void operator()(std::FILE* file) const noexcept;
    };

    std::string m_path;
    std::string m_targetPath;    // the file replaced (m_path or where its links lead)
    std::string m_temporaryPath; // empty when writing a device or pipe in place
    std::unique_ptr<std::FILE, Closer> m_file;
    std::uint64_t m_written = 0;
};

} // namespace Vellum::DataIO::File

#endif
