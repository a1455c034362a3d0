#pragma once

#include "TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace quor2d_tool
{

/// Gives each test a directory of its own.
class TemporaryDirectoryTest : public ::testing::Test
{
protected:
    std::string pathOf(const std::string& name) const { return directory.path(name); }

    std::string write(const std::string& name, const std::string& content) const
    {
        std::ofstream(pathOf(name), std::ios::binary) << content;
        return pathOf(name);
    }

    std::string read(const std::string& name) const { return readFile(pathOf(name)); }

    std::size_t numFiles() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(directory.path()), {}));
    }

    TemporaryDirectory directory;
};

} // namespace quor2d_tool
