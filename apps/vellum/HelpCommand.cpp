#include "HelpCommand.h"

#include "Application.h"
#include "ArgumentParser.h"
#include "UsageError.h"

namespace Vellum::App {

HelpCommand::HelpCommand(const Application& application) noexcept
    : m_application(application) {}

std::string HelpCommand::name() const {
    return "help";
}

std::string HelpCommand::summary() const {
    return "show the list of commands, or the help of one command";
}

std::string HelpCommand::synopsis() const {
    return "vellum help [COMMAND]";
}

std::string HelpCommand::description() const {
    return "Without COMMAND, lists the commands; with it, shows that command's help.\n";
}

int HelpCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    arguments.requirePositionals(0, 1, "COMMAND");
    if (arguments.positionals().empty()) {
        m_application.printUsage(out);
        return 0;
    }
    const std::string& name = arguments.positionals().front();
    const Command* const command = m_application.find(name);
    if (command == nullptr) {
        throw UsageError("unknown command '" + name + "'", synopsis());
    }
    command->printHelp(out);
    return 0;
}

} // namespace Vellum::App
