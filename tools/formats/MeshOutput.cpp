#include "formats/MeshOutput.h"

#include "formats/FileError.h"
#include "formats/MeshWriters.h"
#include "formats/NodePolyReader.h"
#include "formats/OutputFile.h"
#include "formats/WebScene.h"

#include <memory>
#include <set>

namespace quor2d_tool
{
namespace
{

using Writer = void (*)(const MeshData&, OutputFile&);

Writer writerOf(Format format)
{
    switch (format) {
    case Format::Node:
        return writeNode;
    case Format::Ele:
        return writeEle;
    case Format::Edge:
        return writeEdge;
    case Format::Poly:
        return writePoly;
    case Format::GeoJson:
        return writeGeoJson;
    case Format::Msh:
        return writeMsh;
    case Format::Vtu:
        return writeVtu;
    case Format::PostScript:
        return writePostScript;
    case Format::Svg:
        return writeSvg;
    default:
        return writeObj;
    }
}

// The files of a target: the family of .node is more than one.
std::vector<OutputTarget> filesOf(const OutputTarget& target)
{
    bool bFamily = target.format == Format::Node || target.format == Format::Ele || target.format == Format::Edge ||
                   target.format == Format::Poly;
    if (!bFamily || target.path == "-")
        return {target};
    std::string base = basePath(target.path);
    std::vector<OutputTarget> vFiles = {{base + ".node", Format::Node}, {base + ".ele", Format::Ele}};
    if (target.format == Format::Edge || target.format == Format::Poly)
        vFiles.push_back(target);
    return vFiles;
}

std::vector<OutputTarget> allFiles(const std::vector<OutputTarget>& vTargets)
{
    std::vector<OutputTarget> vFiles;
    std::set<std::string> sPaths;
    for (const OutputTarget& target : vTargets)
        for (const OutputTarget& file : filesOf(target))
            if (sPaths.insert(file.path).second)
                vFiles.push_back(file);
    return vFiles;
}

} // namespace

void checkTargets(const std::vector<OutputTarget>& vTargets)
{
    for (const OutputTarget& file : allFiles(vTargets)) {
        if (file.format == Format::WebScene)
            WebScene::checkWritable(file.path);
        else
            checkWritable(file.path);
    }
}

void writeMesh(const MeshData& mesh, const std::vector<OutputTarget>& vTargets)
{
    std::vector<std::unique_ptr<OutputFile>> vFiles;
    std::vector<std::unique_ptr<WebScene>> vScenes;
    for (const OutputTarget& target : allFiles(vTargets)) {
        if (target.format == Format::WebScene) {
            vScenes.push_back(std::make_unique<WebScene>(target.path, mesh));
        } else {
            vFiles.push_back(std::make_unique<OutputFile>(target.path));
            writerOf(target.format)(mesh, *vFiles.back());
            vFiles.back()->close();
        }
    }
    for (auto& pFile : vFiles)
        pFile->commit();
    for (auto& pScene : vScenes)
        pScene->commit();
}

} // namespace quor2d_tool
