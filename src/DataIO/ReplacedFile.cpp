#include "DataIO/ReplacedFile.h"

#include <system_error>

namespace Vellum::DataIO::File::detail {

ReplacedFile::ReplacedFile(const std::string& path)
    : m_path(path) {
    namespace fs = std::filesystem;
    std::error_code error;
    if (fs::is_symlink(path, error)) {
        // A dangling link still names the file to create.
        const fs::path resolved = fs::weakly_canonical(path, error);
        if (!error) {
            m_path = resolved.string();
        }
    }
    const fs::file_status status = fs::status(m_path, error);
    m_exists = !error && fs::exists(status);
    m_regular = m_exists && fs::is_regular_file(status);
    if (m_regular) {
        m_permissions = status.permissions();
    }
}

void ReplacedFile::lendPermissionsTo(const std::string& other) const {
    if (m_regular) {
        std::error_code ignored;
        std::filesystem::permissions(other, m_permissions, ignored);
    }
}

} // namespace Vellum::DataIO::File::detail
