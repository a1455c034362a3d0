#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace quor2d_tool
{

/// A directory of its own for each test, removed afterwards.
class TemporaryDirectoryTest : public ::testing::Test
{
protected:
    TemporaryDirectoryTest()
    {
        std::string pattern = ::testing::TempDir() + "quor2d-XXXXXX";
        directory = mkdtemp(pattern.data());
    }
    ~TemporaryDirectoryTest() override { std::filesystem::remove_all(directory); }

    std::string pathOf(const std::string& name) const { return directory + "/" + name; }

    std::string write(const std::string& name, const std::string& content) const
    {
        std::ofstream(pathOf(name), std::ios::binary) << content;
        return pathOf(name);
    }

    std::string read(const std::string& name) const
    {
        std::ifstream file(pathOf(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::size_t numFiles() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(directory), {}));
    }

    std::string directory;
};

} // namespace quor2d_tool
