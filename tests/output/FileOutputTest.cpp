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

TEST(FileOutputTest, ReplicatesEveryResourceOverOldFiles)
{
    const TemporaryDirectory directory;
    CapturedOutput output;
    for (const char* name : {"index.html", "jsc3d.js", "jsc3d.webgl.js", "jsc3d.touch.js", "jsc3d.ctm.js",
                             "jsc3d.3ds.js", "jsc3d.console.js", "jsc3d.ie.js"}) {
        fileReplicate(name, directory.path().c_str());
        const std::string text = readFile(std::string(QUOR2D_RESOURCES) + name);
        ASSERT_FALSE(text.empty()) << name;
        EXPECT_TRUE(readFile(directory.path(name)) == text) << name;
        std::ofstream(directory.path(name)) << text << "old";
        fileReplicate(name, directory.path().c_str());
        EXPECT_TRUE(readFile(directory.path(name)) == text) << name;
    }
    EXPECT_EQ(output.take(), "");
}

TEST(FileOutputTest, UnknownResourceIsReportedAndNotWritten)
{
    const TemporaryDirectory directory;
    CapturedOutput output;
    fileReplicate("jsc3d.txt", directory.path().c_str());
    EXPECT_EQ(output.take(), "\n      [Quor2D-Message] fileReplicate, ERROR: unknown filejsc3d.txt\n\n");
    fileReplicate("", directory.path().c_str());
    fileReplicate("../index.html", directory.path().c_str());
    output.take();
    fileReplicate(nullptr, directory.path().c_str());
    EXPECT_EQ(output.take(), "\n      [Quor2D-Message] fileReplicate, ERROR: unknown file\n\n");
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST(FileOutputTest, UnwritableTargetsAreNotReported)
{
    const TemporaryDirectory directory;
    CapturedOutput output;
    fileReplicate("index.html", directory.path("missing").c_str());
    fileReplicate("index.html", nullptr);
    EXPECT_EQ(output.take(), "");
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}
