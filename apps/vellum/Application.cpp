#include "Application.h"

#include "ApplyCommand.h"
#include "BuildInfo.h"
#include "Command.h"
#include "DiffCommand.h"
#include "FromXmlCommand.h"
#include "GraphCommand.h"
#include "HeaderCommand.h"
#include "HelpCommand.h"
#include "InfoCommand.h"
#include "KlvCommand.h"
#include "SetsCommand.h"
#include "ToXmlCommand.h"
#include "UsageError.h"
#include "VersionCommand.h"

#include <algorithm>
#include <ostream>

namespace Vellum::App {

Application::Application() {
    m_commands.push_back(std::make_unique<HelpCommand>(*this));
    m_commands.push_back(std::make_unique<VersionCommand>());
    m_commands.push_back(std::make_unique<KlvCommand>());
    m_commands.push_back(std::make_unique<InfoCommand>());
    m_commands.push_back(std::make_unique<SetsCommand>());
    m_commands.push_back(std::make_unique<HeaderCommand>());
    m_commands.push_back(std::make_unique<ToXmlCommand>());
    m_commands.push_back(std::make_unique<FromXmlCommand>());
    m_commands.push_back(std::make_unique<DiffCommand>());
    m_commands.push_back(std::make_unique<ApplyCommand>());
    m_commands.push_back(std::make_unique<GraphCommand>());
}

Application::~Application() = default;

std::string Application::synopsis() {
    return "vellum COMMAND [OPTIONS] [ARGUMENTS]";
}

int Application::run(const std::vector<std::string>& arguments, std::ostream& out) const {
    if (arguments.empty() || arguments.front() == "--help" || arguments.front() == "-h") {
        printUsage(out);
        return 0;
    }
    const std::string& name = arguments.front();
    if (name.size() > 1 && name.front() == '-') {
        throw UsageError("unknown option '" + name + "'", synopsis());
    }
    Command* const command = find(name);
    if (command == nullptr) {
        throw UsageError("unknown command '" + name + "'", synopsis());
    }
    return command->execute({arguments.begin() + 1, arguments.end()}, out);
}

void Application::printUsage(std::ostream& out) const {
    out << "vellum " << BuildInfo::programVersion
        << ": inspects MXF files and converts their header metadata to and from XML\n\n"
        << "usage: " << synopsis() << "\n\ncommands:\n";
    std::size_t width = 0;
    for (const auto& command : m_commands) {
        width = std::max(width, command->name().size());
    }
    for (const auto& command : m_commands) {
        const std::string name = command->name();
        out << "  " << name << std::string(width - name.size() + 3, ' ') << command->summary()
            << '\n';
    }
    out << "\nRun 'vellum COMMAND --help' for the usage and options of a command.\n";
}

Command* Application::find(const std::string& name) const {
    for (const auto& command : m_commands) {
        if (command->name() == name) {
            return command.get();
        }
    }
    return nullptr;
}

} // namespace Vellum::App
