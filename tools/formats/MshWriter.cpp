#include "formats/MeshWriters.h"
#include "formats/NumberText.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace quor2d_tool
{
namespace
{

constexpr int kMshLine = 1;
constexpr int kMshTriangle = 2;

// An entity of the file: the elements of one number, and the physical group that carries the number.
struct Group {
    double number = 0.0;
    std::string name;
    int entityTag = 0;
    int physicalTag = 0; // 0: none
    std::vector<std::uint32_t> vElements;
};

// A number that is a valid tag is its own tag; others get tags above, and their names tell the number. 0 means that
// there is no group.
void setTags(std::vector<Group>& vGroups, const char* pKind)
{
    auto isTag = [](double number) { return number > 0 && number < INT_MAX / 2 && number == std::floor(number); };
    int highest = 0;
    for (const Group& group : vGroups)
        if (isTag(group.number))
            highest = std::max(highest, static_cast<int>(group.number));
    int entityTag = 0;
    for (Group& group : vGroups) {
        group.entityTag = ++entityTag;
        if (group.number != 0.0)
            group.physicalTag = isTag(group.number) ? static_cast<int>(group.number) : ++highest;
        if (group.name.empty())
            group.name = std::string(pKind) + " " + plainNumberText(group.number);
        for (char& c : group.name)
            if (c == '"' || (c >= 0 && c < ' '))
                c = '\'';
    }
}

class MshWriter
{
public:
    MshWriter(const MeshData& rMesh, OutputFile& rFile) : mesh(rMesh), file(rFile)
    {
        collectSurfaces();
        collectCurves();
    }

    void write()
    {
        file << "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n";
        writePhysicalNames();
        writeEntities();
        writeNodes();
        writeElements();
    }

private:
    void collectSurfaces()
    {
        vSurfaces.resize(std::max<std::size_t>(1, mesh.vRegions.size()));
        for (std::size_t r = 0; r < mesh.vRegions.size(); ++r) {
            vSurfaces[r].number = mesh.vRegions[r].number;
            vSurfaces[r].name = mesh.vRegions[r].name;
        }
        for (std::uint32_t t = 0; t < mesh.vTriangles.size(); ++t)
            vSurfaces[mesh.regionOf(t)].vElements.push_back(t);
        dropEmpty(vSurfaces);
        setTags(vSurfaces, "region");
    }

    void collectCurves()
    {
        std::vector<std::uint32_t> vOrder(mesh.vEdges.size());
        for (std::uint32_t i = 0; i < vOrder.size(); ++i)
            vOrder[i] = i;
        std::stable_sort(vOrder.begin(), vOrder.end(), [this](std::uint32_t a, std::uint32_t b) {
            return mesh.vEdges[a].marker < mesh.vEdges[b].marker;
        });
        for (std::uint32_t i : vOrder) {
            if (vCurves.empty() || vCurves.back().number != mesh.vEdges[i].marker) {
                vCurves.emplace_back();
                vCurves.back().number = mesh.vEdges[i].marker;
            }
            vCurves.back().vElements.push_back(i);
        }
        setTags(vCurves, "marker");
    }

    static void dropEmpty(std::vector<Group>& vGroups)
    {
        vGroups.erase(
            std::remove_if(vGroups.begin(), vGroups.end(), [](const Group& group) { return group.vElements.empty(); }),
            vGroups.end());
    }

    void writePhysicalNames()
    {
        std::size_t count = 0;
        for (const auto* pGroups : {&vCurves, &vSurfaces})
            for (const Group& group : *pGroups)
                count += group.physicalTag != 0;
        if (count == 0)
            return;
        file << "$PhysicalNames\n" << count << '\n';
        int dimension = 0;
        for (const auto* pGroups : {&vCurves, &vSurfaces}) {
            ++dimension;
            for (const Group& group : *pGroups)
                if (group.physicalTag != 0)
                    file << dimension << ' ' << group.physicalTag << " \"" << group.name << "\"\n";
        }
        file << "$EndPhysicalNames\n";
    }

    void writeEntities()
    {
        file << "$Entities\n0 " << vCurves.size() << ' ' << vSurfaces.size() << " 0\n";
        for (const Group& group : vCurves) {
            Box box;
            for (std::uint32_t e : group.vElements) {
                box.add(mesh.vertices.vCoords[mesh.vEdges[e].from]);
                box.add(mesh.vertices.vCoords[mesh.vEdges[e].to]);
            }
            writeEntity(group, box);
        }
        for (const Group& group : vSurfaces) {
            Box box;
            for (std::uint32_t t : group.vElements)
                for (std::uint32_t corner : mesh.vTriangles[t])
                    box.add(mesh.vertices.vCoords[corner]);
            writeEntity(group, box);
        }
        file << "$EndEntities\n";
    }

    struct Box {
        Coord low{HUGE_VAL, HUGE_VAL};
        Coord high{-HUGE_VAL, -HUGE_VAL};
        void add(const Coord& c)
        {
            low = {std::min(low.x, c.x), std::min(low.y, c.y)};
            high = {std::max(high.x, c.x), std::max(high.y, c.y)};
        }
    };

    void writeEntity(const Group& group, const Box& box)
    {
        file << group.entityTag << ' ' << box.low.x << ' ' << box.low.y << " 0 " << box.high.x << ' ' << box.high.y
             << " 0 ";
        if (group.physicalTag != 0)
            file << "1 " << group.physicalTag << " 0\n";
        else
            file << "0 0\n";
    }

    void setNodeTags()
    {
        std::int64_t highest = 0;
        vNodeTags.assign(mesh.vertices.size(), 0);
        for (std::size_t i = 0; i < mesh.vInputNumbers.size(); ++i)
            if (mesh.vInputNumbers[i] != MeshData::kNewVertex) {
                vNodeTags[i] = mesh.vInputNumbers[i] - mesh.firstNumber + 1;
                highest = std::max(highest, vNodeTags[i]);
            }
        for (std::int64_t& tag : vNodeTags)
            if (tag == 0)
                tag = ++highest;
    }

    void writeNodes()
    {
        setNodeTags();
        auto [pLow, pHigh] = std::minmax_element(vNodeTags.begin(), vNodeTags.end());
        file << "$Nodes\n1 " << vNodeTags.size() << ' ' << *pLow << ' ' << *pHigh << '\n';
        file << "2 " << vSurfaces.front().entityTag << " 0 " << vNodeTags.size() << '\n';
        for (std::int64_t tag : vNodeTags)
            file << tag << '\n';
        for (const Coord& c : mesh.vertices.vCoords)
            file << c.x << ' ' << c.y << " 0\n";
        file << "$EndNodes\n";
    }

    void writeElements()
    {
        std::size_t count = mesh.vEdges.size() + mesh.vTriangles.size();
        file << "$Elements\n" << vCurves.size() + vSurfaces.size() << ' ' << count << " 1 " << count << '\n';
        std::size_t tag = 0;
        for (const Group& group : vCurves) {
            file << "1 " << group.entityTag << ' ' << kMshLine << ' ' << group.vElements.size() << '\n';
            for (std::uint32_t e : group.vElements)
                file << ++tag << ' ' << vNodeTags[mesh.vEdges[e].from] << ' ' << vNodeTags[mesh.vEdges[e].to] << '\n';
        }
        for (const Group& group : vSurfaces) {
            file << "2 " << group.entityTag << ' ' << kMshTriangle << ' ' << group.vElements.size() << '\n';
            for (std::uint32_t t : group.vElements) {
                const auto& aCorners = mesh.vTriangles[t];
                file << ++tag << ' ' << vNodeTags[aCorners[0]] << ' ' << vNodeTags[aCorners[1]] << ' '
                     << vNodeTags[aCorners[2]] << '\n';
            }
        }
        file << "$EndElements\n";
    }

    const MeshData& mesh;
    OutputFile& file;
    std::vector<Group> vSurfaces;
    std::vector<Group> vCurves;
    std::vector<std::int64_t> vNodeTags;
};

} // namespace

void writeMsh(const MeshData& mesh, OutputFile& file)
{
    MshWriter(mesh, file).write();
}

} // namespace quor2d_tool
