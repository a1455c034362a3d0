#pragma once

#include "formats/Scene.h"

#include <string>
#include <vector>

namespace quor2d_tool
{

/// A directory with a page that shows a mesh in a browser. It is filled beside its place; commit() moves it there, or
/// its files into the directory that stands there.
class WebScene
{
public:
    /// Writes the unfinished directory. Throws FileError.
    WebScene(const std::string& path, const MeshData& mesh);
    ~WebScene();
    WebScene(const WebScene&) = delete;
    WebScene& operator=(const WebScene&) = delete;

    void commit();

    /// Throws FileError where the directory can clearly not be written.
    static void checkWritable(const std::string& path);

private:
    void writeResources();
    void writeModel(const MeshData& mesh, const char* pName, const char* pBefore, const char* pBehind);
    void discard();

    std::string target;    // without a slash at its end
    std::string temporary; // empty once it is in its place
};

} // namespace quor2d_tool
