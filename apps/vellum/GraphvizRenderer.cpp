#include "GraphvizRenderer.h"

#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/Throw.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

extern char** environ; // NOLINT: the POSIX interface for the environment

namespace Vellum::App {
namespace {

// How much of the program's error output a message quotes.
constexpr std::size_t maxErrorText = 2000;

std::string systemError(int error) {
    return std::error_code(error, std::generic_category()).message();
}

// One end of a pipe, closed when it goes out of scope.
class PipeEnd {
public:
    PipeEnd() noexcept = default;
    explicit PipeEnd(int fd) noexcept
        : m_fd(fd) {}
    PipeEnd(PipeEnd&& other) noexcept
        : m_fd(std::exchange(other.m_fd, -1)) {}
    PipeEnd& operator=(PipeEnd&& other) noexcept {
        if (this != &other) {
            reset();
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }
    PipeEnd(const PipeEnd&) = delete;
    PipeEnd& operator=(const PipeEnd&) = delete;
    ~PipeEnd() { reset(); }

    int get() const noexcept { return m_fd; }
    bool isOpen() const noexcept { return m_fd >= 0; }
    void reset() noexcept {
        if (m_fd >= 0) {
            ::close(m_fd);
            m_fd = -1;
        }
    }

private:
    int m_fd = -1;
};

// A pipe whose ends are not inherited by child processes (the child gets copies through
// dup2, which clears the flag).
std::pair<PipeEnd, PipeEnd> makePipe() {
    std::array<int, 2> fds{};
    if (::pipe2(fds.data(), O_CLOEXEC) != 0) {
        VELLUM_THROW(IOError, "cannot create a pipe for Graphviz: " + systemError(errno));
    }
    return {PipeEnd(fds[0]), PipeEnd(fds[1])};
}

// Ignores SIGPIPE while it lives, so that a program that exits before reading all its input
// gives a write error here instead of ending this process.
class IgnoreBrokenPipe {
public:
    IgnoreBrokenPipe() noexcept { m_previous = std::signal(SIGPIPE, SIG_IGN); }
    IgnoreBrokenPipe(const IgnoreBrokenPipe&) = delete;
    IgnoreBrokenPipe& operator=(const IgnoreBrokenPipe&) = delete;
    ~IgnoreBrokenPipe() {
        if (m_previous != SIG_ERR) {
            std::signal(SIGPIPE, m_previous);
        }
    }

private:
    void (*m_previous)(int) = SIG_ERR;
};

// The spawn settings: the pipes as the child's standard streams, SIGPIPE back to default.
class SpawnSetup {
public:
    SpawnSetup(int input, int output, int error) {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawnattr_init(&m_attributes);
        ::posix_spawn_file_actions_adddup2(&m_actions, input, STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&m_actions, error, STDERR_FILENO);
        sigset_t defaults;
        sigemptyset(&defaults);
        sigaddset(&defaults, SIGPIPE);
        ::posix_spawnattr_setsigdefault(&m_attributes, &defaults);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGDEF);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;
    ~SpawnSetup() {
        ::posix_spawn_file_actions_destroy(&m_actions);
        ::posix_spawnattr_destroy(&m_attributes);
    }

    const posix_spawn_file_actions_t* actions() const noexcept { return &m_actions; }
    const posix_spawnattr_t* attributes() const noexcept { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

// Appends what is there to read from `fd` to `text`; closes `fd` at its end.
void drain(PipeEnd& fd, std::string& text) {
    std::array<char, 64 * 1024> buffer{};
    const ssize_t count = ::read(fd.get(), buffer.data(), buffer.size());
    if (count > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
        fd.reset();
    }
}

// Waits for the child and returns its wait status.
int waitFor(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return -1;
        }
    }
    return status;
}

} // namespace

GraphvizRenderer::GraphvizRenderer(std::string program)
    : m_program(std::move(program)) {}

std::string GraphvizRenderer::render(const std::string& dot, const std::string& format) const {
    auto [childInput, toChild] = makePipe();
    auto [fromChild, childOutput] = makePipe();
    auto [errorsFromChild, childErrors] = makePipe();
    const std::string formatOption = "-T" + format;
    std::vector<char*> argv{const_cast<char*>(m_program.c_str()),
                            const_cast<char*>(formatOption.c_str()), nullptr};
    const IgnoreBrokenPipe ignoreBrokenPipe;
    pid_t child = 0;
    {
        const SpawnSetup setup(childInput.get(), childOutput.get(), childErrors.get());
        const int failed = ::posix_spawnp(&child, m_program.c_str(), setup.actions(),
                                          setup.attributes(), argv.data(), environ);
        if (failed != 0) {
            const std::string hint =
                failed == ENOENT ? " (is the graphviz package installed?)" : "";
            VELLUM_THROW(IOError, "cannot run the Graphviz program '" + m_program +
                                      "': " + systemError(failed) + hint);
        }
    }
    childInput.reset();
    childOutput.reset();
    childErrors.reset();

    // Feed the graph and collect both outputs at once, so that neither side waits on a full
    // pipe.
    std::string output;
    std::string errors;
    std::size_t written = 0;
    int writeError = 0;
    if (dot.empty()) {
        toChild.reset();
    }
    while (toChild.isOpen() || fromChild.isOpen() || errorsFromChild.isOpen()) {
        std::array<pollfd, 3> fds{{{toChild.get(), POLLOUT, 0},
                                   {fromChild.get(), POLLIN, 0},
                                   {errorsFromChild.get(), POLLIN, 0}}};
        if (::poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            writeError = errno;
            break;
        }
        if (fds[0].revents != 0) {
            const ssize_t count =
                ::write(toChild.get(), dot.data() + written, dot.size() - written);
            if (count > 0) {
                written += static_cast<std::size_t>(count);
            } else if (errno != EINTR && errno != EAGAIN) {
                writeError = errno;
                toChild.reset();
            }
            if (written == dot.size()) {
                toChild.reset();
            }
        }
        if (fds[1].revents != 0) {
            drain(fromChild, output);
        }
        if (fds[2].revents != 0) {
            drain(errorsFromChild, errors);
        }
    }
    toChild.reset();
    fromChild.reset();
    errorsFromChild.reset();

    const int status = waitFor(child);
    const bool succeeded = status != -1 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (!succeeded || writeError != 0) {
        std::string message = "Graphviz '" + m_program + " " + formatOption + "' failed";
        if (status != -1 && WIFEXITED(status) && WEXITSTATUS(status) != 0) {
            message += " with exit status " + std::to_string(WEXITSTATUS(status));
        } else if (status != -1 && WIFSIGNALED(status)) {
            message += " with signal " + std::to_string(WTERMSIG(status));
        } else if (writeError != 0) {
            message += ": " + systemError(writeError);
        }
        while (!errors.empty() && (errors.back() == '\n' || errors.back() == '\r')) {
            errors.pop_back();
        }
        if (!errors.empty()) {
            message += ": " + errors.substr(0, maxErrorText);
        }
        VELLUM_THROW(IOError, message);
    }
    return output;
}

} // namespace Vellum::App
