#ifndef VELLUM_APP_HELPCOMMAND_H
#define VELLUM_APP_HELPCOMMAND_H

#include "Command.h"

namespace Vellum::App {

class Application;

/// "vellum help [COMMAND]": the program's usage, or the help of one command.
class HelpCommand : public Command {
public:
    /// Borrows `application`, which owns this command and so outlives it.
    explicit HelpCommand(const Application& application) noexcept;

    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    /// Throws UsageError for more than one argument or an unknown command name.
    int run(const ArgumentParser& arguments, std::ostream& out) override;

private:
    const Application& m_application;
};

} // namespace Vellum::App

#endif
