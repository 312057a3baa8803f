#ifndef VELLUM_TESTS_SUPPORT_SAMPLES_H
#define VELLUM_TESTS_SUPPORT_SAMPLES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace VellumTest {

/// The folder of the sample MXF files written by independent programs.
inline std::string sampleDir() {
    return std::string(VELLUM_TEST_DATA_DIR) + "/mxf";
}

/// The names of every sample MXF file, sorted.
inline std::vector<std::string> sampleNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(sampleDir())) {
        if (entry.path().extension() == ".mxf") {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// A sample's file name (or path) as a test name (letters and digits only).
inline std::string testName(std::string name) {
    name = name.substr(name.find_last_of('/') + 1);
    name = name.substr(0, name.rfind('.'));
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
}

/// Names a test run for each sample by the sample (INSTANTIATE_TEST_SUITE_P's last argument).
inline std::string sampleTestName(const ::testing::TestParamInfo<std::string>& info) {
    return testName(info.param);
}

} // namespace VellumTest

#endif
