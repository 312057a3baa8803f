#include "OutputFile.h"

#include "Vellum/DataIO/File/FileDataSink.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/Throw.h"

#include <filesystem>
#include <ostream>
#include <system_error>

namespace Vellum::App {

void OutputFile::write(const char* bytes, std::size_t size, const std::string& path,
                       std::ostream& out, const std::string& what) {
    if (isStandardOutput(path)) {
        out.write(bytes, static_cast<std::streamsize>(size));
        out.flush();
        if (!out) {
            VELLUM_THROW(IOError, "cannot write " + what + " to standard output");
        }
        return;
    }
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        VELLUM_THROW(IOError, "output '" + path + "' is a directory, not a file");
    }
    DataIO::File::FileDataSink sink(path);
    sink.write(reinterpret_cast<const std::uint8_t*>(bytes), size);
    sink.commit();
}

std::string OutputFile::describe(const std::string& path) {
    return isStandardOutput(path) ? "standard output" : path;
}

} // namespace Vellum::App
