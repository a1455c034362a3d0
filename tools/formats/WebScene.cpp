#include "formats/WebScene.h"

#include "FileOutput.h"
#include "formats/FileError.h"
#include "formats/MeshWriters.h"
#include "formats/OutputFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace quor2d_tool
{
namespace
{

constexpr const char* kResources[] = {"index.html", "jsc3d.js", "jsc3d.ctm.js", "jsc3d.touch.js"};
constexpr const char* kFiles[] = {"index.html", "jsc3d.js", "jsc3d.ctm.js", "jsc3d.touch.js", "3d.obj", "3d.obj.js"};

std::string withoutSlash(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::string parentOf(const std::string& path)
{
    std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

[[noreturn]] void failWithErrno(const std::string& path)
{
    throw FileError(path, std::strerror(errno));
}

} // namespace

void WebScene::checkWritable(const std::string& path)
{
    std::string directory = withoutSlash(path);
    struct stat status;
    bool bThere = stat(directory.c_str(), &status) == 0;
    if (bThere && !S_ISDIR(status.st_mode))
        throw FileError(path, std::strerror(ENOTDIR));
    if (access((bThere ? directory : parentOf(directory)).c_str(), W_OK | X_OK) != 0)
        failWithErrno(path);
}

WebScene::WebScene(const std::string& path, const MeshData& mesh) : target(withoutSlash(path))
{
    checkWritable(path);
    struct stat status;
    bool bThere = stat(target.c_str(), &status) == 0;
    temporary = temporaryNameBeside(bThere ? target + "/scene" : target);
    if (mkdir(temporary.c_str(), 0777) != 0) {
        temporary.clear();
        failWithErrno(path);
    }
    try {
        writeResources();
        // After the resources: the library does not tell when the disk is full, these do.
        writeModel(mesh, "3d.obj", "", "");
        // The page loads this one where it is opened from disk and may not read other files.
        writeModel(mesh, "3d.obj.js", "window.JSC3D_SCENE_TEXT = `", "`;\n");
    } catch (const std::exception&) {
        discard();
        throw;
    }
}

void WebScene::writeResources()
{
    addUnfinished(temporary);
    for (const char* pName : kResources) {
        ZELK_QUOR2D::fileReplicate(pName, temporary.c_str());
        struct stat status;
        if (stat((temporary + "/" + pName).c_str(), &status) != 0 || status.st_size == 0)
            throw FileError(target + "/" + pName, "cannot be written");
    }
}

void WebScene::writeModel(const MeshData& mesh, const char* pName, const char* pBefore, const char* pBehind)
{
    OutputFile model(temporary + "/" + pName);
    model << pBefore;
    writeObj(mesh, model);
    model << pBehind;
    model.close();
    model.commit();
}

WebScene::~WebScene()
{
    discard();
}

void WebScene::discard()
{
    if (temporary.empty())
        return;
    for (const char* pName : kFiles)
        unlink((temporary + "/" + pName).c_str());
    rmdir(temporary.c_str());
    removeUnfinished(temporary);
    temporary.clear();
}

void WebScene::commit()
{
    struct stat status;
    if (stat(target.c_str(), &status) != 0) {
        if (rename(temporary.c_str(), target.c_str()) != 0)
            failWithErrno(target);
        removeUnfinished(temporary);
        temporary.clear();
        return;
    }
    for (const char* pName : kFiles)
        if (rename((temporary + "/" + pName).c_str(), (target + "/" + pName).c_str()) != 0)
            failWithErrno(target + "/" + pName);
    discard();
}

} // namespace quor2d_tool
