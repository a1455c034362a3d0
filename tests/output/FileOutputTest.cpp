#include "FileOutput.h"
#include "OutputTestSupport.h"

#include <gtest/gtest.h>

using namespace ZELK_QUOR2D;

TEST(FileOutputTest, CreateDirectoryTellsWhetherTheDirectoryExistsAfterwards)
{
    const TemporaryDirectory directory;
    const std::string created = directory.path("scene");
    EXPECT_TRUE(createDirectory(created.c_str()));
    EXPECT_TRUE(std::filesystem::is_directory(created));
    EXPECT_TRUE(createDirectory(created.c_str()));
    EXPECT_TRUE(createDirectory((created + "/").c_str()));
    EXPECT_TRUE(createDirectory(directory.path("slash/").c_str()));

    EXPECT_FALSE(createDirectory(nullptr));
    EXPECT_FALSE(createDirectory(""));
    EXPECT_FALSE(createDirectory(directory.path("missing/scene").c_str()));
    EXPECT_FALSE(createDirectory(std::string(100000, 'x').c_str()));
    std::ofstream(directory.path("file")) << "kept";
    EXPECT_FALSE(createDirectory(directory.path("file").c_str()));
    EXPECT_FALSE(createDirectory(directory.path("file/").c_str()));
    EXPECT_EQ(readFile(directory.path("file")), "kept");
}
