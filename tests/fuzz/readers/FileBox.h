#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace fuzz
{

/// A directory for the files of one process, in memory where the system has such a place.
class FileBox
{
public:
    FileBox()
    {
        namespace fs = std::filesystem;
        std::string pattern =
            (fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) / "quor2d-fuzz-XXXXXX";
        if (!mkdtemp(pattern.data()))
            std::abort();
        directory = pattern;
    }
    ~FileBox()
    {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
    FileBox(const FileBox&) = delete;
    FileBox& operator=(const FileBox&) = delete;

    std::string path(const char* pName) const { return (directory / pName).string(); }

    void write(const char* pName, std::string_view content) const
    {
        std::ofstream(path(pName), std::ios::binary) << content;
    }
    void remove(const char* pName) const { std::filesystem::remove(path(pName)); }

private:
    std::filesystem::path directory;
};

} // namespace fuzz
