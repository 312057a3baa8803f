#ifndef VELLUM_APP_APPLICATION_H
#define VELLUM_APP_APPLICATION_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace Vellum::App {

class Command;

/// The program: owns its commands and sends a command line to the one it names.
class Application {
public:
    /// Sets up every command.
    Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application();

    /// Runs the command line `arguments` (without the program name), writing normal output to
    /// `out`, and returns the exit status. No arguments, "--help" or "-h" print the usage.
    /// Throws UsageError for an unknown command or option, and passes on what the command
    /// throws.
    int run(const std::vector<std::string>& arguments, std::ostream& out) const;

    /// Writes the program's usage and the list of commands to `out`.
    void printUsage(std::ostream& out) const;

    /// The command called `name`, or null; the application keeps ownership.
    Command* find(const std::string& name) const;

    /// The program's one-line usage.
    static std::string synopsis();

private:
    std::vector<std::unique_ptr<Command>> m_commands;
};

} // namespace Vellum::App

#endif
