// Small helpers shared by the fuzz harnesses: a failed check that names the
// harness and aborts (so that libFuzzer and the corpus replay both report
// it), and one scratch directory per process for readers that want files.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fuzz {

inline void Require(bool condition, const char* harness, const char* what, const std::string& detail = {})
{
    if (!condition) {
        std::fprintf(stderr, "%s: %s %s\n", harness, what, detail.c_str());
        std::abort();
    }
}

// A directory of its own for the whole run, removed when the process ends
// normally.
class ScratchDirectory
{
public:
    explicit ScratchDirectory(const char* prefix)
    {
        std::string pattern =
            (std::filesystem::temp_directory_path() / (std::string(prefix) + "-XXXXXX")).string();
        if (!mkdtemp(pattern.data()))
            std::abort();
        m_path = pattern;
    }
    ~ScratchDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

inline void WriteBytes(const std::filesystem::path& path, const uint8_t* bytes, size_t size)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes), std::streamsize(size));
    if (!file)
        std::abort();
}

} // namespace fuzz
