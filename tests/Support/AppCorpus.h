#ifndef VELLUM_TESTS_SUPPORT_APPCORPUS_H
#define VELLUM_TESTS_SUPPORT_APPCORPUS_H

#include "Support/Samples.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace VellumTest {

/// The sample files the tests of the whole corpus use: the bundled ones, then those of
/// ../shared/samples/mxf-real beside the checkout when that folder is there (none otherwise,
/// so that no test reads a folder that is absent).
inline std::vector<std::string> corpusPaths() {
    std::vector<std::string> paths;
    for (const std::string& name : sampleNames()) {
        paths.push_back(sampleDir() + "/" + name);
    }
    const std::filesystem::path real =
        std::filesystem::path(VELLUM_SOURCE_DIR) / ".." / "shared" / "samples" / "mxf-real";
    std::error_code ignored;
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(real, ignored)) {
        if (entry.path().extension() == ".mxf") {
            found.push_back(entry.path().string());
        }
    }
    std::sort(found.begin(), found.end());
    paths.insert(paths.end(), found.begin(), found.end());
    return paths;
}

} // namespace VellumTest

#endif
