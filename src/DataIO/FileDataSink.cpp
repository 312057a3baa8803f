#include "Vellum/DataIO/File/FileDataSink.h"

#include "DataIO/ReplacedFile.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/Throw.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace Vellum::DataIO::File {

void FileDataSink::Closer::operator()(std::FILE* file) const noexcept {
    std::fclose(file);
}

FileDataSink::FileDataSink(std::string path)
    : m_path(std::move(path)) {
    const detail::ReplacedFile replaced(m_path);
    if (replaced.isSpecial()) {
        // A device or pipe (/dev/null, a named pipe) cannot be replaced, only written.
        m_file.reset(std::fopen(replaced.path().c_str(), "wb"));
        if (!m_file) {
            VELLUM_THROW(IOError, "cannot open '" + m_path + "': " + std::strerror(errno));
        }
        return;
    }
    m_targetPath = replaced.path();
    m_temporaryPath = m_targetPath + ".vellum-tmp";
    m_file.reset(std::fopen(m_temporaryPath.c_str(), "wb"));
    if (!m_file) {
        VELLUM_THROW(IOError, "cannot create '" + m_temporaryPath + "': " + std::strerror(errno));
    }
    replaced.lendPermissionsTo(m_temporaryPath);
}

FileDataSink::~FileDataSink() {
    if (m_file) {
        m_file.reset();
        if (!m_temporaryPath.empty()) {
            std::remove(m_temporaryPath.c_str());
        }
    }
}

void FileDataSink::write(const std::uint8_t* bytes, std::uint64_t count) {
    if (!m_file) {
        VELLUM_THROW(IOError, "write to '" + m_path + "' after it was committed");
    }
    if (count != 0 && std::fwrite(bytes, 1, count, m_file.get()) != count) {
        const std::string& written = m_temporaryPath.empty() ? m_path : m_temporaryPath;
        VELLUM_THROW(IOError, "cannot write '" + written + "': " + std::strerror(errno));
    }
    m_written += count;
}

void FileDataSink::commit() {
    if (!m_file) {
        VELLUM_THROW(IOError, "'" + m_path + "' was already committed");
    }
    const bool flushed = std::fflush(m_file.get()) == 0;
    std::FILE* file = m_file.release();
    const bool closed = std::fclose(file) == 0;
    const bool direct = m_temporaryPath.empty();
    if (!flushed || !closed ||
        (!direct && std::rename(m_temporaryPath.c_str(), m_targetPath.c_str()) != 0)) {
        const std::string reason = std::strerror(errno);
        if (!direct) {
            std::remove(m_temporaryPath.c_str());
        }
        VELLUM_THROW(IOError, "cannot write '" + m_path + "': " + reason);
    }
}

} // namespace Vellum::DataIO::File
