#include "Vellum/DataIO/File/FileDataSource.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace Vellum::DataIO::File {
namespace {

std::string systemError() {
    return std::strerror(errno);
}

} // namespace

void FileDataSource::Closer::operator()(std::FILE* file) const noexcept {
    std::fclose(file);
}

FileDataSource::FileDataSource(const std::string& path, std::size_t bufferSize)
    : m_path(path)
    , m_file(std::fopen(path.c_str(), "rb"))
    , m_buffer(std::max<std::size_t>(bufferSize, 16)) {
    if (!m_file) {
        VELLUM_THROW(IOError, "cannot open '" + path + "': " + systemError());
    }
    // This class buffers; a second buffer inside the stream would only copy once more.
    std::setvbuf(m_file.get(), nullptr, _IONBF, 0);
    if (std::fseek(m_file.get(), 0, SEEK_END) != 0) {
        VELLUM_THROW(IOError, "cannot seek in '" + path + "': " + systemError());
    }
    const long end = std::ftell(m_file.get());
    if (end < 0) {
        VELLUM_THROW(IOError, "cannot measure '" + path + "': " + systemError());
    }
    m_size = static_cast<std::uint64_t>(end);
    std::rewind(m_file.get());
}

FileDataSource::~FileDataSource() = default;

void FileDataSource::seek(std::uint64_t absolutePosition) {
    if (absolutePosition > m_size) {
        VELLUM_THROW(InvalidLength, "seek to offset " + std::to_string(absolutePosition) +
                                        " lies past the end of '" + m_path + "' (" +
                                        std::to_string(m_size) + " bytes)");
    }
    if (absolutePosition >= m_bufferStart && absolutePosition <= m_bufferStart + m_bufferFill) {
        m_bufferPos = static_cast<std::size_t>(absolutePosition - m_bufferStart);
        return;
    }
    m_bufferStart = absolutePosition;
    m_bufferPos = 0;
    m_bufferFill = 0;
}

void FileDataSource::fill() {
    m_bufferStart += m_bufferFill;
    m_bufferPos = 0;
    m_bufferFill = 0;
    const std::size_t want =
        static_cast<std::size_t>(std::min<std::uint64_t>(m_buffer.size(), m_size - m_bufferStart));
    readAt(m_bufferStart, m_buffer.data(), want);
    m_bufferFill = want;
}

void FileDataSource::readAt(std::uint64_t offset, std::uint8_t* out, std::size_t count) {
    if (std::fseek(m_file.get(), static_cast<long>(offset), SEEK_SET) != 0) {
        VELLUM_THROW(IOError, "cannot seek in '" + m_path + "': " + systemError());
    }
    if (std::fread(out, 1, count, m_file.get()) != count) {
        VELLUM_THROW(IOError, "cannot read '" + m_path + "' at offset " + std::to_string(offset) +
                                  ": file shrank or failed");
    }
}

void FileDataSource::readUnchecked(std::uint8_t* out, std::uint64_t count) {
    while (count > 0) {
        if (m_bufferPos == m_bufferFill) {
            if (count >= m_buffer.size()) {
                // A read as large as the buffer goes straight to its destination.
                const std::uint64_t at = position();
                readAt(at, out, static_cast<std::size_t>(count));
                m_bufferStart = at + count;
                m_bufferPos = 0;
                m_bufferFill = 0;
                return;
            }
            fill();
        }
        const std::size_t n =
            static_cast<std::size_t>(std::min<std::uint64_t>(count, m_bufferFill - m_bufferPos));
        std::memcpy(out, m_buffer.data() + m_bufferPos, n);
        m_bufferPos += n;
        out += n;
        count -= n;
    }
}

} // namespace Vellum::DataIO::File
