#ifndef VELLUM_APP_COMMAND_H
#define VELLUM_APP_COMMAND_H

#include <iosfwd>
#include <string>
#include <vector>

namespace Vellum::App {

class ArgumentParser;

/// One subcommand of the program ("vellum NAME ..."). Every command understands "--help" and
/// "-h", which print its help instead of running it.
class Command {
public:
    Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    virtual ~Command();

    /// The word that selects the command on the command line.
    virtual std::string name() const = 0;
    /// A short phrase for the command list of the program's help.
    virtual std::string summary() const = 0;
    /// The one-line usage, e.g. "vellum klv [--limit N] FILE".
    virtual std::string synopsis() const = 0;

    /// Parses `arguments` (those after the command's name) and runs the command, writing its
    /// output to `out`. Returns the exit status. Throws UsageError for a bad command line;
    /// whatever the work itself throws (toolkit exceptions, std::exception) passes through.
    int execute(const std::vector<std::string>& arguments, std::ostream& out);

    /// Writes the synopsis, the description and the options to `out`.
    void printHelp(std::ostream& out) const;

protected:
    /// The help text between the synopsis and the option list; lines end in '\n'.
    virtual std::string description() const = 0;
    /// The option list of the help, one "  --option  meaning\n" line each ("--help" is added).
    virtual std::string optionHelp() const;
    /// Declares the command's own options; "--help" is declared already.
    virtual void declareOptions(ArgumentParser& parser) const;
    /// Does the work once the arguments are parsed; returns the exit status.
    virtual int run(const ArgumentParser& arguments, std::ostream& out) = 0;
};

} // namespace Vellum::App

#endif
