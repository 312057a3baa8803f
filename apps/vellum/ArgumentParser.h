#ifndef VELLUM_APP_ARGUMENTPARSER_H
#define VELLUM_APP_ARGUMENTPARSER_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Vellum::App {

/// The arguments of one command: declared options ("--name", "--name VALUE", "--name=VALUE",
/// one-letter aliases such as "-h") and positional arguments. "--" ends the options; a lone
/// "-" is positional. Every fault is a UsageError that carries the command's synopsis.
class ArgumentParser {
public:
    /// @param synopsis the one-line usage of the command, quoted in every UsageError.
    explicit ArgumentParser(std::string synopsis);

    /// Declares a flag "--name" (and "-<shortName>" unless `shortName` is 0).
    void addFlag(const std::string& name, char shortName = '\0');
    /// Declares an option "--name" (and "-<shortName>" unless `shortName` is 0) that takes a
    /// value and may be given once.
    void addValueOption(const std::string& name, char shortName = '\0');
    /// Declares an option "--name" that takes a value and may be given any number of times.
    void addRepeatableOption(const std::string& name);

    /// Splits `arguments` into options and positionals. Throws UsageError for an unknown
    /// option, a missing value, a value given to a flag, or a non-repeatable option given
    /// twice.
    void parse(const std::vector<std::string>& arguments);

    /// Whether the flag `name` was given.
    bool flag(const std::string& name) const;
    /// The value given to option `name`, if it was given.
    std::optional<std::string> value(const std::string& name) const;
    /// Every value given to option `name`, in command-line order (empty if none).
    std::vector<std::string> values(const std::string& name) const;
    /// The value of option `name` as a whole number from 1 to 2^64-1, or nothing if it was not
    /// given. Throws UsageError for anything else (sign, blank, non-digits, overflow).
    std::optional<std::uint64_t> positiveNumber(const std::string& name) const;

    /// The positional arguments, in order.
    const std::vector<std::string>& positionals() const noexcept { return m_positionals; }
    /// Throws UsageError unless there are `min` to `max` positionals; `what` names them in
    /// the message ("FILE").
    void requirePositionals(std::size_t min, std::size_t max, const std::string& what) const;

    /// The synopsis given to the constructor.
    const std::string& synopsis() const noexcept { return m_synopsis; }

private:
    struct Option {
        bool takesValue = false;
        bool repeatable = false;
    };

    // Handles one "--..." or "-x" argument at `index`; returns the index of the last
    // argument it consumed.
    std::size_t parseOption(const std::vector<std::string>& arguments, std::size_t index);
    [[noreturn]] void fail(const std::string& message) const;

    std::string m_synopsis;
    std::map<std::string, Option> m_options;
    std::map<char, std::string> m_shortNames;
    std::map<std::string, std::vector<std::string>> m_values;
    std::set<std::string> m_flags;
    std::vector<std::string> m_positionals;
};

} // namespace Vellum::App

#endif
