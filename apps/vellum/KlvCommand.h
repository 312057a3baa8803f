#ifndef VELLUM_APP_KLVCOMMAND_H
#define VELLUM_APP_KLVCOMMAND_H

#include "Command.h"

#include <cstdint>
#include <optional>

namespace Vellum::DataIO {
class DataSource;
} // namespace Vellum::DataIO

namespace Vellum::App {

/// "vellum klv [--limit N] FILE": lists the KLV triplets of a file, one line each, after
/// skipping a run-in.
class KlvCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    /// Lists the file. Throws IOError if it cannot be read, InvalidFormat if it is empty or not
    /// MXF; a malformed or truncated triplet throws (InvalidFormat or InvalidLength, naming
    /// its offset) after the triplets before it are written to `out`.
    int run(const ArgumentParser& arguments, std::ostream& out) override;

private:
    // Writes one line per triplet from the source's position to its end, or up to `limit`.
    static void listTriplets(DataIO::DataSource& source, std::uint64_t fileSize,
                             std::optional<std::uint64_t> limit, std::ostream& out);
};

} // namespace Vellum::App

#endif
