#ifndef VELLUM_APP_RUNIN_H
#define VELLUM_APP_RUNIN_H

#include <cstdint>
#include <string>

namespace Vellum::DataIO {
class DataSource;
} // namespace Vellum::DataIO

namespace Vellum::App {

/// The longest run-in skipped: the first partition pack must start within the first 65536
/// bytes of a file.
inline constexpr std::uint64_t maxRunInLength = 65535;

/// Finds where the KLV data of a file starts and moves `source` there. That is offset 0 when
/// the source starts with a SMPTE key (06.0E.2B.34); otherwise the run-in is skipped, and
/// the data starts at the first partition pack key (06.0E.2B.34.02.05.01.xx.0D.01.02.01.01)
/// found at an offset up to maxRunInLength. Throws InvalidFormat, naming `name`, when there
/// is no such key (the source is not MXF).
std::uint64_t findKlvStart(DataIO::DataSource& source, const std::string& name);

} // namespace Vellum::App

#endif
