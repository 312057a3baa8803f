#include "FuzzTargets.h"
#include "Support/PrintCase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// One input of one fuzz target: a seed (fuzz/corpus/<target>) or an input that once showed a
/// fault (tests/data/fuzz-regressions/<target>).
struct Input {
    std::string target;
    fs::path path;
};
VELLUM_PRINT_CASE(Input, c.target << " " << c.path.filename().string())

std::vector<Input> allInputs() {
    const fs::path roots[] = {fs::path(VELLUM_SOURCE_DIR) / "fuzz" / "corpus",
                              fs::path(VELLUM_TEST_DATA_DIR) / "fuzz-regressions"};
    std::vector<Input> inputs;
    for (const VellumFuzz::Target& target : VellumFuzz::targets()) {
        for (const fs::path& root : roots) {
            const fs::path dir = root / target.name;
            if (!fs::is_directory(dir)) {
                continue;
            }
            for (const auto& entry : fs::directory_iterator(dir)) {
                if (entry.is_regular_file()) {
                    inputs.push_back({target.name, entry.path()});
                }
            }
        }
    }
    std::sort(inputs.begin(), inputs.end(),
              [](const Input& a, const Input& b) { return a.path < b.path; });
    return inputs;
}

class FuzzInput : public testing::TestWithParam<Input> {};

// The entry catches the toolkit's own exceptions; anything that escapes it (a broken promise
// of the library, another exception) or a crash fails the test.
TEST_P(FuzzInput, RunsWithoutAFault) {
    const Input& input = GetParam();
    const VellumFuzz::Target* target = VellumFuzz::findTarget(input.target);
    ASSERT_NE(target, nullptr);
    std::ifstream file(input.path, std::ios::binary);
    ASSERT_TRUE(file) << input.path;
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file),
                                          std::istreambuf_iterator<char>()};
    try {
        target->run(bytes.data(), bytes.size());
    } catch (const std::exception& e) {
        FAIL() << input.path << ": " << e.what();
    }
}

std::string nameOf(const testing::TestParamInfo<Input>& info) {
    const std::string source =
        info.param.path.parent_path().parent_path().filename() == "corpus" ? "seed" : "regression";
    std::string name = source + "_" + info.param.target + "_" + info.param.path.filename().string();
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Inputs, FuzzInput, testing::ValuesIn(allInputs()), nameOf);

} // namespace
