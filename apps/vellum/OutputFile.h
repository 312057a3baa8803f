#ifndef VELLUM_APP_OUTPUTFILE_H
#define VELLUM_APP_OUTPUTFILE_H

#include <cstddef>
#include <iosfwd>
#include <string>

namespace Vellum::App {

/// Where a command writes its result: a file, replaced only once every byte is written, or
/// standard output for "-".
class OutputFile {
public:
    /// Writes `size` bytes from `bytes` to the file `path` through a temporary file beside it
    /// that replaces it on success, or to `out` when `path` is "-". `what` names the content
    /// in messages ("the XML"). Throws IOError when `path` is a directory or the bytes cannot
    /// be written; an existing file is then left as it was and no temporary file remains.
    static void write(const char* bytes, std::size_t size, const std::string& path,
                      std::ostream& out, const std::string& what);

    /// Whether `path` means standard output.
    static bool isStandardOutput(const std::string& path) noexcept { return path == "-"; }

    /// "standard output" for "-", otherwise `path`; for summaries.
    static std::string describe(const std::string& path);
};

} // namespace Vellum::App

#endif
