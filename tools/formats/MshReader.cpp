#include "formats/MshReader.h"

#include "formats/FileError.h"
#include "formats/LineReader.h"
#include "formats/NumberText.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>
#include <utility>

namespace quor2d_tool
{
namespace
{

constexpr std::int64_t kHighestCount = static_cast<std::int64_t>(kMaxCount);
constexpr std::int64_t kHighestTag = std::int64_t(1) << 62; // leaves room for the tags of new nodes
constexpr char kNoComment = '\0';

class MshReader
{
public:
    explicit MshReader(const std::string& path) : lines(path) {}

    MeshData read()
    {
        readFormat();
        while (lines.nextFilled(kNoComment)) { // ends with the input
            std::string section(lines.field());
            if (section == "$PhysicalNames")
                readPhysicalNames();
            else if (section == "$Entities")
                readEntities();
            else if (section == "$Nodes")
                readNodes();
            else if (section == "$Elements")
                readElements();
            else if (section.empty() || section[0] != '$')
                lines.fail("expected a section, found " + inQuotes(section));
            skipToEnd(section);
        }
        if (mesh.vertices.size() == 0)
            throw FileError(lines.name(), "holds no nodes");
        mesh.firstNumber = 1;
        setTriangleRegions(mesh, vNumbers);
        return std::move(mesh);
    }

private:
    using EntityKey = std::pair<int, std::int64_t>; // dimension and tag

    void readFormat()
    {
        nextLine("$MeshFormat");
        if (lines.field() != "$MeshFormat")
            lines.fail("not a .msh file: it does not begin with $MeshFormat");
        nextLine("the version");
        std::string version(lines.field());
        if (version != "4.1")
            lines.fail("version " + inQuotes(version) + " of the format; only 4.1 can be read");
        if (lines.integer("the kind of file") != 0)
            lines.fail("binary .msh files cannot be read");
        skipToEnd("$MeshFormat");
    }

    void nextLine(const char* what)
    {
        if (!lines.nextFilled(kNoComment))
            lines.fail(std::string("file ends where ") + what + " is expected");
    }

    void skipToEnd(const std::string& section)
    {
        std::string end = "$End" + section.substr(1);
        const std::string what = inQuotes(end);
        do { // ends with the section or fails with the input
            nextLine(what.c_str());
        } while (lines.text().substr(0, end.size()) != end);
    }

    // Numbers other than positive whole ones live in the names of their groups: "region -3".
    void readPhysicalNames()
    {
        nextLine("the number of names");
        std::int64_t count = lines.integer("the number of names", 0, kHighestCount);
        for (std::int64_t i = 0; i < count; ++i) {
            nextLine("a name");
            int dimension = static_cast<int>(lines.integer("dimension", 0, 3));
            std::int64_t tag = lines.integer("tag");
            std::string_view text = lines.text();
            std::size_t blank = text.rfind(' ');
            double number = 0.0;
            if (!text.empty() && text.back() == '"' && blank != std::string_view::npos &&
                !parseNumber(text.substr(blank + 1, text.size() - blank - 2), number) && isOurName(text, dimension))
                mPhysicalNumbers[{dimension, tag}] = number;
        }
    }

    static bool isOurName(std::string_view text, int dimension)
    {
        return text.find(dimension == 1 ? "\"marker " : "\"region ") != std::string_view::npos;
    }

    void readEntities()
    {
        nextLine("the numbers of entities");
        std::int64_t aCounts[4];
        for (std::int64_t& count : aCounts)
            count = lines.integer("the number of entities", 0, kHighestCount);
        for (int dimension = 0; dimension < 4; ++dimension)
            for (std::int64_t i = 0; i < aCounts[dimension]; ++i) {
                nextLine("an entity");
                std::int64_t tag = lines.integer("tag");
                for (int k = 0; k < (dimension == 0 ? 3 : 6); ++k)
                    lines.number("a bound of the entity");
                if (lines.integer("the number of physical groups", 0, kHighestCount) > 0)
                    mPhysicalTags[{dimension, tag}] = lines.integer("physical group");
            }
    }

    void readNodes()
    {
        if (!vNodes.empty())
            lines.fail("a second section of nodes");
        nextLine("the numbers of nodes");
        std::int64_t numBlocks = lines.integer("the number of blocks", 0, kHighestCount);
        std::int64_t numNodes = lines.integer("the number of nodes", 0, kHighestCount);
        for (std::int64_t b = 0; b < numBlocks; ++b) {
            nextLine("a block of nodes");
            lines.integer("dimension", 0, 3);
            lines.integer("entity");
            lines.integer("parametric flag", 0, 1);
            std::int64_t count = lines.integer("the number of nodes", 0, kHighestCount);
            for (std::int64_t i = 0; i < count; ++i) {
                nextLine("the tag of a node");
                std::int64_t tag = lines.integer("tag of the node", 1, kHighestTag);
                vNodes.push_back({tag, static_cast<std::uint32_t>(vNodes.size())});
            }
            for (std::int64_t i = 0; i < count; ++i) {
                nextLine("the coordinates of a node");
                double x = lines.number("x");
                mesh.vertices.vCoords.push_back({x, lines.number("y")});
            }
        }
        if (numNodes != static_cast<std::int64_t>(vNodes.size()))
            lines.fail(std::to_string(vNodes.size()) + " nodes where " + std::to_string(numNodes) + " are announced");
        for (const auto& node : vNodes)
            mesh.vInputNumbers.push_back(node.first);
        std::sort(vNodes.begin(), vNodes.end());
        auto sameTag = [](const auto& a, const auto& b) { return a.first == b.first; };
        auto q_it = std::adjacent_find(vNodes.begin(), vNodes.end(), sameTag);
        if (q_it != vNodes.end())
            lines.fail("two nodes have the tag " + std::to_string(q_it->first));
    }

    std::uint32_t node()
    {
        std::int64_t tag = lines.integer("node");
        auto q_it = std::lower_bound(vNodes.begin(), vNodes.end(), std::make_pair(tag, std::uint32_t(0)));
        if (q_it == vNodes.end() || q_it->first != tag)
            lines.fail("there is no node with the tag " + std::to_string(tag));
        return q_it->second;
    }

    void readElements()
    {
        nextLine("the numbers of elements");
        std::int64_t numBlocks = lines.integer("the number of blocks", 0, kHighestCount);
        std::int64_t numElements = lines.integer("the number of elements", 0, kHighestCount);
        std::int64_t numRead = 0;
        for (std::int64_t b = 0; b < numBlocks; ++b) {
            nextLine("a block of elements");
            int dimension = static_cast<int>(lines.integer("dimension", 0, 3));
            double number = groupNumber(dimension, lines.integer("entity"));
            std::int64_t type = lines.integer("type of elements");
            std::int64_t count = lines.integer("the number of elements", 0, kHighestCount);
            for (std::int64_t i = 0; i < count; ++i) {
                nextLine("an element");
                lines.integer("tag of the element");
                readElement(type, number);
            }
            numRead += count;
        }
        if (numRead != numElements)
            lines.fail(std::to_string(numRead) + " elements where " + std::to_string(numElements) + " are announced");
    }

    double groupNumber(int dimension, std::int64_t entity) const
    {
        auto q_tag = mPhysicalTags.find({dimension, entity});
        if (q_tag == mPhysicalTags.end())
            return 0.0;
        auto q_number = mPhysicalNumbers.find({dimension, q_tag->second});
        return q_number == mPhysicalNumbers.end() ? static_cast<double>(q_tag->second) : q_number->second;
    }

    void readElement(std::int64_t type, double number)
    {
        constexpr std::int64_t kLine = 1, kTriangle = 2, kPoint = 15;
        if (type == kTriangle) {
            std::array<std::uint32_t, 3> aCorners;
            for (std::uint32_t& corner : aCorners)
                corner = node();
            mesh.vTriangles.push_back(aCorners);
            vNumbers.push_back(number);
        } else if (type == kLine) {
            std::uint32_t from = node();
            if (std::abs(number) > INT_MAX)
                lines.fail("the physical group " + plainNumberText(number) + " of a line is too large");
            mesh.vEdges.push_back({from, node(), static_cast<int>(number), true});
        } else if (type != kPoint) {
            lines.fail("elements of the type " + std::to_string(type) + " where triangles are expected");
        }
    }

    LineReader lines;
    MeshData mesh;
    std::vector<double> vNumbers;
    std::vector<std::pair<std::int64_t, std::uint32_t>> vNodes; // tag and vertex; sorted once complete
    std::map<EntityKey, std::int64_t> mPhysicalTags;
    std::map<EntityKey, double> mPhysicalNumbers;
};

} // namespace

MeshData readMsh(const std::string& path)
{
    return MshReader(path).read();
}

} // namespace quor2d_tool
