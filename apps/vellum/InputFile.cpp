#include "InputFile.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/Throw.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Vellum::App {
namespace {

constexpr const char* standardInputName = "standard input";

// Closes a file descriptor when it goes out of scope.
class Descriptor {
public:
    explicit Descriptor(int fd) noexcept
        : m_fd(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    int get() const noexcept { return m_fd; }
    // Gives up ownership of the descriptor.
    int release() noexcept { return std::exchange(m_fd, -1); }

private:
    int m_fd;
};

std::string systemError(int error) {
    return std::error_code(error, std::generic_category()).message();
}

// Whether standard input is a regular file whose read position is still at its start, so
// that opening it again through /dev/stdin reads all of it.
bool isUnreadRegularFile() {
    struct stat status {};
    if (::fstat(STDIN_FILENO, &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    return ::lseek(STDIN_FILENO, 0, SEEK_CUR) == 0;
}

// Writes all `count` bytes of `bytes` to `fd`.
bool writeAll(int fd, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = ::write(fd, bytes, count);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

} // namespace

InputFile::InputFile(std::string argument) {
    if (!isStandardInput(argument)) {
        std::error_code ignored;
        if (std::filesystem::is_directory(argument, ignored)) {
            VELLUM_THROW(IOError, "'" + argument + "' is a directory, not a file");
        }
        m_name = argument;
        m_path = std::move(argument);
        return;
    }
    m_name = standardInputName;
    m_standardInput = true;
    if (::isatty(STDIN_FILENO) == 1) {
        VELLUM_THROW(IOError, "standard input is a terminal: give a file, or redirect or pipe "
                              "the input to '-'");
    }
    if (isUnreadRegularFile()) {
        m_path = "/dev/stdin";
        return;
    }
    m_copy = copyStandardInput();
    m_path = "/dev/fd/" + std::to_string(m_copy);
}

InputFile::~InputFile() {
    if (m_copy >= 0) {
        ::close(m_copy);
    }
}

std::string InputFile::quotedName() const {
    return m_standardInput ? m_name : "'" + m_name + "'";
}

int InputFile::copyStandardInput() {
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::temp_directory_path(error);
    if (error) {
        VELLUM_THROW(IOError, "cannot copy standard input: no temporary directory (" +
                                  error.message() + ")");
    }
    const std::string pattern = (directory / "vellum-stdin-XXXXXX").string();
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    Descriptor file(::mkstemp(name.data()));
    if (file.get() < 0) {
        VELLUM_THROW(IOError, "cannot copy standard input: cannot create a temporary file in '" +
                                  directory.string() + "': " + systemError(errno));
    }
    // Removed from its folder at once: the open descriptor keeps the data for as long as it
    // is needed.
    ::unlink(name.data());
    std::array<char, 64 * 1024> buffer{};
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            VELLUM_THROW(IOError, "cannot read standard input: " + systemError(errno));
        }
        if (count == 0) {
            break;
        }
        if (!writeAll(file.get(), buffer.data(), static_cast<std::size_t>(count))) {
            VELLUM_THROW(IOError, "cannot copy standard input to a temporary file in '" +
                                      directory.string() + "': " + systemError(errno));
        }
    }
    return file.release();
}

} // namespace Vellum::App
