#include "tests/fuzz/readers/ReaderTargets.h"

#include "formats/FileError.h"
#include "tests/fuzz/Targets.h"
#include "tests/fuzz/readers/ReadChecks.h"

#include <cstring>
#include <string>
#include <string_view>

namespace fuzz
{

using namespace quor2d_tool;

namespace
{

const FileBox& box()
{
    static const FileBox theBox;
    return theBox;
}

std::string_view textOf(const std::uint8_t* pData, std::size_t numBytes)
{
    return {reinterpret_cast<const char*>(pData), numBytes};
}

// A message of one line that begins with the file.
void checkMessage(const std::string& message)
{
    const std::size_t start = box().path("").size();
    require(message.compare(0, start, box().path("")) == 0, "a message does not begin with the file");
    for (char c : message)
        require(c < 0 || (c >= ' ' && c != 127), "a message holds control characters");
}

void readAsScene(const char* pName, Format format)
{
    Scene scene;
    try {
        scene = readScene(box().path(pName), format);
    } catch (const FileError& fault) {
        checkMessage(fault.what());
        return;
    }
    checkScene(scene);
    checkTriangulation(scene);
}

void readAsMesh(const char* pName, Format format)
{
    MeshData mesh;
    try {
        mesh = readMesh(box().path(pName), format);
    } catch (const FileError& fault) {
        checkMessage(fault.what());
        return;
    }
    checkMeshData(mesh);
    checkRoundTrip(mesh, box());
}

// Writes the parts of the input, which stand between lines "====", as a.node, a.ele and a.poly; missing ones not.
void writeFamily(std::string_view text)
{
    constexpr std::string_view kLine = "====\n";
    for (const char* pName : {"a.node", "a.ele", "a.poly"}) {
        box().remove(pName);
        if (text.data() == nullptr)
            continue;
        const std::size_t end = text.find(kLine);
        box().write(pName, text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + kLine.size());
    }
}

} // namespace

void runReadPoints(const std::uint8_t* pData, std::size_t numBytes)
{
    box().write("a.csv", textOf(pData, numBytes));
    readAsScene("a.csv", Format::Points);
}

void runReadGeoJson(const std::uint8_t* pData, std::size_t numBytes)
{
    box().write("a.geojson", textOf(pData, numBytes));
    readAsScene("a.geojson", Format::GeoJson);
    readAsMesh("a.geojson", Format::GeoJson);
}

void runReadWkt(const std::uint8_t* pData, std::size_t numBytes)
{
    box().write("a.wkt", textOf(pData, numBytes));
    readAsScene("a.wkt", Format::Wkt);
}

void runReadObj(const std::uint8_t* pData, std::size_t numBytes)
{
    box().write("a.obj", textOf(pData, numBytes));
    readAsScene("a.obj", Format::Obj);
    readAsMesh("a.obj", Format::Obj);
}

void runReadMsh(const std::uint8_t* pData, std::size_t numBytes)
{
    box().write("a.msh", textOf(pData, numBytes));
    readAsMesh("a.msh", Format::Msh);
}

void runReadNode(const std::uint8_t* pData, std::size_t numBytes)
{
    writeFamily(textOf(pData, numBytes));
    readAsScene("a.node", Format::Node);
    readAsMesh("a.ele", Format::Ele);
}

void runReadPoly(const std::uint8_t* pData, std::size_t numBytes)
{
    writeFamily(textOf(pData, numBytes));
    readAsScene("a.poly", Format::Poly);
}

} // namespace fuzz
