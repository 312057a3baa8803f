#ifndef VELLUM_TESTS_SUPPORT_TEMPDIR_H
#define VELLUM_TESTS_SUPPORT_TEMPDIR_H

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

namespace VellumTest {

/// A fresh directory under the system's temporary directory, removed with its contents.
class TempDir {
public:
    TempDir() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "vellum-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("cannot create a temporary directory");
        }
        m_path = pattern;
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& path() const noexcept { return m_path; }
    std::string file(const std::string& name) const { return (m_path / name).string(); }

    /// Writes `bytes` to a file in the directory and returns its path.
    std::string write(const std::string& name, const std::vector<std::uint8_t>& bytes) const {
        const std::string p = file(name);
        std::ofstream out(p, std::ios::binary);
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
        return p;
    }

private:
    std::filesystem::path m_path;
};

/// The whole content of a file.
inline std::vector<std::uint8_t> readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace VellumTest

#endif
