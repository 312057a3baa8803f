#ifndef VELLUM_APP_INPUTFILE_H
#define VELLUM_APP_INPUTFILE_H

#include <string>

namespace Vellum::App {

/// The file a command reads, as given on its command line: a path, or "-" for standard input.
///
/// Readers need a file they can seek in. Standard input redirected from a regular file (and
/// not read yet) is opened again through /dev/stdin; anything else (a pipe, a socket) is
/// copied to a temporary file first. That file is removed from its folder as soon as it is
/// written and read through its open descriptor (/dev/fd/N), so nothing is left behind even
/// when the program is killed; the descriptor is closed when this object goes.
class InputFile {
public:
    /// Takes the command-line argument `argument`. For "-", reads standard input as described
    /// above; throws IOError when it is a terminal or cannot be read or copied. For any other
    /// argument, throws IOError when it names a directory; it is not opened here.
    explicit InputFile(std::string argument);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    /// Whether `argument` means standard input.
    static bool isStandardInput(const std::string& argument) noexcept { return argument == "-"; }

    /// Whether this input is standard input.
    bool readsStandardInput() const noexcept { return m_standardInput; }
    /// The path to open: the argument, /dev/stdin or the copy's /dev/fd/N.
    const std::string& path() const noexcept { return m_path; }
    /// The input's name for messages and listings: the argument, or "standard input".
    const std::string& name() const noexcept { return m_name; }
    /// The name for the start of an error message: the argument in quotes, or "standard input".
    std::string quotedName() const;

private:
    // Copies standard input to a new temporary file that is already removed from its folder,
    // and returns its open descriptor.
    static int copyStandardInput();

    std::string m_path;
    std::string m_name;
    bool m_standardInput = false;
    int m_copy = -1; // the descriptor of the copy of standard input, or -1
};

} // namespace Vellum::App

#endif
