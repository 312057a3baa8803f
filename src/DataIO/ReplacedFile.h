#ifndef VELLUM_DATAIO_REPLACEDFILE_H
#define VELLUM_DATAIO_REPLACEDFILE_H

#include <filesystem>
#include <string>

namespace Vellum::DataIO::File::detail {

/// The file that writing a path replaces. A symbolic link stays a link: the file it names is
/// the one replaced. Only a regular file (or a path that does not exist yet) can be replaced by
/// renaming a finished file over it; a device, pipe or socket must be written in place.
class ReplacedFile {
public:
    explicit ReplacedFile(const std::string& path);

    /// Where the new file goes: `path`, or the file its symbolic links lead to.
    const std::string& path() const { return m_path; }
    bool exists() const { return m_exists; }
    /// True when the path exists and is a device, pipe, socket or directory.
    bool isSpecial() const { return m_exists && !m_regular; }

    /// Gives `other` (a finished replacement) the permissions of the file it replaces; does
    /// nothing when there is none. Best effort: a file system that refuses keeps the default.
    void lendPermissionsTo(const std::string& other) const;

private:
    std::string m_path;
    bool m_exists = false;
    bool m_regular = false;
    std::filesystem::perms m_permissions = std::filesystem::perms::none;
};

} // namespace Vellum::DataIO::File::detail

#endif
