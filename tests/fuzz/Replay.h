#pragma once

#include "tests/fuzz/Targets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fuzz
{

using Target = void (*)(const std::uint8_t*, std::size_t);

inline std::vector<std::filesystem::path> filesIn(const std::string& directory)
{
    std::vector<std::filesystem::path> vFiles;
    if (std::filesystem::is_directory(directory))
        for (const auto& entry : std::filesystem::directory_iterator(directory))
            vFiles.push_back(entry.path());
    std::sort(vFiles.begin(), vFiles.end());
    return vFiles;
}

inline void replayFile(Target target, const std::filesystem::path& file)
{
    SCOPED_TRACE(file.filename().string());
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::uint8_t> vBytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    try {
        target(vBytes.data(), vBytes.size());
    } catch (const Violation& violation) {
        ADD_FAILURE() << violation.what();
    }
}

/// Runs the inputs in the repository through a target: the seeds, and what faults have left.
inline void replay(Target target, const std::string& name)
{
    const std::vector<std::filesystem::path> vSeeds = filesIn(QUOR2D_FUZZ_SEEDS "/" + name);
    EXPECT_FALSE(vSeeds.empty());
    const std::vector<std::filesystem::path> vFaults = filesIn(QUOR2D_TEST_DATA "/fuzz/" + name);
    for (const auto& vFiles : {vSeeds, vFaults})
        for (const std::filesystem::path& file : vFiles)
            replayFile(target, file);
}

} // namespace fuzz
