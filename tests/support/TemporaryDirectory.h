#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

// A directory of its own for each test, removed at the end: tests run side by side and must not share files.
class TemporaryDirectory
{
public:
    TemporaryDirectory()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "quor2d_XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary directory");
        directory = pattern;
    }
    ~TemporaryDirectory()
    {
        std::error_code error;
        std::filesystem::remove_all(directory, error);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string path(const std::string& name) const { return (directory / name).string(); }
    std::string path() const { return directory.string(); }

private:
    std::filesystem::path directory;
};

inline std::string readFile(const std::string& filename)
{
    std::ifstream file(filename, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}
