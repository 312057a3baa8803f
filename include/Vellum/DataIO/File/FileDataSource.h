#ifndef VELLUM_DATAIO_FILE_FILEDATASOURCE_H
#define VELLUM_DATAIO_FILE_FILEDATASOURCE_H

#include "Vellum/DataIO/DataSource.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace Vellum::DataIO::File {

/// Reads a file through a fixed-size buffer, so files of any size are read without
/// loading them whole. Throws IOError when the file cannot be opened or read.
class VELLUM_CORE_EXPORT FileDataSource : public DataSource {
public:
    /// Opens `path` (UTF-8) for reading.
    /// Reads of at least `bufferSize` bytes bypass the buffer.
    explicit FileDataSource(const std::string& path,
                            std::size_t bufferSize = std::size_t{16} * 1024);
    ~FileDataSource() override;

    std::uint64_t remaining() const override { return m_size - position(); }
    std::uint64_t position() const override { return m_bufferStart + m_bufferPos; }
    void seek(std::uint64_t absolutePosition) override;

    /// The file's size in bytes, taken when it was opened.
    std::uint64_t size() const noexcept { return m_size; }
    const std::string& path() const noexcept { return m_path; }

protected:
    void readUnchecked(std::uint8_t* out, std::uint64_t count) override;

private:
    struct Closer {
        void operator()(std::FILE* file) const noexcept;
    };

    void fill();
    void readAt(std::uint64_t offset, std::uint8_t* out, std::size_t count);

    std::string m_path;
    std::unique_ptr<std::FILE, Closer> m_file;
    std::uint64_t m_size = 0;
    std::vector<std::uint8_t> m_buffer;
    std::uint64_t m_bufferStart = 0; // file offset of m_buffer[0]
    std::size_t m_bufferPos = 0;     // next byte within the buffer
    std::size_t m_bufferFill = 0;    // valid bytes in the buffer
};

} // namespace Vellum::DataIO::File

#endif
