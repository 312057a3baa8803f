#include "ArgumentParser.h"

#include "UsageError.h"

#include <limits>
#include <utility>

namespace Vellum::App {

ArgumentParser::ArgumentParser(std::string synopsis)
    : m_synopsis(std::move(synopsis)) {}

void ArgumentParser::addFlag(const std::string& name, char shortName) {
    m_options[name] = Option{false, false};
    if (shortName != '\0') {
        m_shortNames[shortName] = name;
    }
}

void ArgumentParser::addValueOption(const std::string& name, char shortName) {
    m_options[name] = Option{true, false};
    if (shortName != '\0') {
        m_shortNames[shortName] = name;
    }
}

void ArgumentParser::addRepeatableOption(const std::string& name) {
    m_options[name] = Option{true, true};
}

void ArgumentParser::fail(const std::string& message) const {
    throw UsageError(message, m_synopsis);
}

void ArgumentParser::parse(const std::vector<std::string>& arguments) {
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
            m_positionals.push_back(argument);
        } else if (argument == "--") {
            optionsEnded = true;
        } else {
            i = parseOption(arguments, i);
        }
    }
}

std::size_t ArgumentParser::parseOption(const std::vector<std::string>& arguments,
                                        std::size_t index) {
    const std::string& argument = arguments[index];
    std::string name;
    std::optional<std::string> inlineValue;
    if (argument[1] != '-') {
        const auto shortName = m_shortNames.find(argument[1]);
        if (argument.size() != 2 || shortName == m_shortNames.end()) {
            fail("unknown option '" + argument + "'");
        }
        name = shortName->second;
    } else {
        const std::size_t equals = argument.find('=');
        name = argument.substr(2, equals == std::string::npos ? std::string::npos : equals - 2);
        if (equals != std::string::npos) {
            inlineValue = argument.substr(equals + 1);
        }
    }
    const auto option = m_options.find(name);
    if (option == m_options.end()) {
        fail("unknown option '--" + name + "'");
    }
    if (!option->second.repeatable && (m_flags.count(name) != 0 || m_values.count(name) != 0)) {
        fail("option '--" + name + "' is given more than once");
    }
    if (!option->second.takesValue) {
        if (inlineValue) {
            fail("option '--" + name + "' takes no value");
        }
        m_flags.insert(name);
        return index;
    }
    if (inlineValue) {
        m_values[name].push_back(*inlineValue);
        return index;
    }
    if (index + 1 >= arguments.size()) {
        fail("option '--" + name + "' needs a value");
    }
    m_values[name].push_back(arguments[index + 1]);
    return index + 1;
}

bool ArgumentParser::flag(const std::string& name) const {
    return m_flags.count(name) != 0;
}

std::optional<std::string> ArgumentParser::value(const std::string& name) const {
    const auto found = m_values.find(name);
    if (found == m_values.end()) {
        return std::nullopt;
    }
    return found->second.back();
}

std::vector<std::string> ArgumentParser::values(const std::string& name) const {
    const auto found = m_values.find(name);
    return found == m_values.end() ? std::vector<std::string>{} : found->second;
}

std::optional<std::uint64_t> ArgumentParser::positiveNumber(const std::string& name) const {
    const std::optional<std::string> text = value(name);
    if (!text) {
        return std::nullopt;
    }
    const std::string problem =
        "option '--" + name + "' needs a whole number from 1 up, not '" + *text + "'";
    if (text->empty()) {
        fail(problem);
    }
    constexpr std::uint64_t maximum = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t number = 0;
    for (const char c : *text) {
        if (c < '0' || c > '9') {
            fail(problem);
        }
        const auto digit = static_cast<std::uint64_t>(c - '0');
        if (number > (maximum - digit) / 10) {
            fail(problem);
        }
        number = number * 10 + digit;
    }
    if (number == 0) {
        fail(problem);
    }
    return number;
}

void ArgumentParser::requirePositionals(std::size_t min, std::size_t max,
                                        const std::string& what) const {
    const std::size_t count = m_positionals.size();
    if (count < min) {
        fail("missing " + what);
    }
    if (count > max) {
        fail("unexpected argument '" + m_positionals[max] + "'");
    }
}

} // namespace Vellum::App
