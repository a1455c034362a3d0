#include "commands/MeshCheck.h"

#include "formats/CoordIndex.h"
#include "formats/NumberText.h"
#include "geometry/ExactPredicates.h"
#include "geometry/SegmentContacts.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace quor2d_tool
{
namespace
{

// A border edge as seen from one of its ends.
struct BorderEnd {
    std::uint32_t vertex;
    std::uint32_t other;
    bool bOutgoing; // the mesh lies to the left on the way from vertex to other
};

class MeshChecker
{
public:
    explicit MeshChecker(MeshData& rMesh) : mesh(rMesh) {}

    MeshCheckResult check()
    {
        bool bSound = checkCorners() && checkCoordinates() && checkOrientations();
        result.vEdges = collectMeshEdges(mesh);
        if (bSound && checkEdges() && checkBorderContacts() && checkOverlap() && checkConstraints())
            checkDelaunay();
        return std::move(result);
    }

private:
    bool fail(const std::string& defect)
    {
        result.defect = defect;
        return false;
    }

    const Coord& at(std::uint32_t vertex) const { return mesh.vertices.vCoords[vertex]; }

    std::string vertexName(std::uint32_t vertex) const
    {
        std::int64_t number =
            mesh.vInputNumbers.empty() ? mesh.firstNumber + std::int64_t(vertex) : mesh.vInputNumbers[vertex];
        return std::to_string(number);
    }
    std::string vertexWithPlace(std::uint32_t vertex) const
    {
        return vertexName(vertex) + " (" + numberText(at(vertex).x) + " " + numberText(at(vertex).y) + ")";
    }
    std::string edgeName(std::uint32_t a, std::uint32_t b) const { return vertexName(a) + "-" + vertexName(b); }
    std::string triangleName(std::uint32_t t) const
    {
        const auto& a = mesh.vTriangles[t];
        return "triangle " + std::to_string(t + mesh.firstNumber) + " (vertices " + vertexName(a[0]) + ", " +
               vertexName(a[1]) + ", " + vertexName(a[2]) + ")";
    }

    bool checkCorners()
    {
        if (mesh.vTriangles.empty())
            return fail("there are no triangles");
        for (std::uint32_t t = 0; t < mesh.vTriangles.size(); ++t) {
            const auto& a = mesh.vTriangles[t];
            if (a[0] == a[1] || a[1] == a[2] || a[2] == a[0])
                return fail(triangleName(t) + " has a corner twice");
        }
        return true;
    }

    bool checkCoordinates()
    {
        std::vector<char> vUsed(mesh.vertices.size(), 0);
        for (const auto& aCorners : mesh.vTriangles)
            for (std::uint32_t corner : aCorners)
                vUsed[corner] = 1;
        CoordIndex index(mesh.vertices.size());
        std::vector<std::uint32_t> vFirst; // the vertex of each place
        for (std::uint32_t v = 0; v < mesh.vertices.size(); ++v) {
            if (!vUsed[v])
                continue;
            std::uint32_t place = index.insert(at(v));
            if (place < vFirst.size())
                return fail("vertices " + vertexName(vFirst[place]) + " and " + vertexWithPlace(v) +
                            " have the same coordinates");
            vFirst.push_back(v);
        }
        return true;
    }

    // A mesh that is clockwise throughout is turned.
    bool checkOrientations()
    {
        std::uint32_t firstOfSign[3] = {MeshEdge::kNone, MeshEdge::kNone, MeshEdge::kNone};
        for (std::uint32_t t = 0; t < mesh.vTriangles.size(); ++t) {
            const auto& a = mesh.vTriangles[t];
            std::uint32_t& first = firstOfSign[orientation(at(a[0]), at(a[1]), at(a[2])) + 1];
            first = std::min(first, t);
        }
        if (firstOfSign[1] != MeshEdge::kNone)
            return fail(triangleName(firstOfSign[1]) + " has no area");
        result.bClockwise = firstOfSign[2] == MeshEdge::kNone;
        if (result.bClockwise)
            for (auto& aCorners : mesh.vTriangles)
                std::swap(aCorners[1], aCorners[2]);
        else if (firstOfSign[0] != MeshEdge::kNone)
            return fail(triangleName(firstOfSign[0]) + " runs clockwise, others do not");
        return true;
    }

    bool checkEdges()
    {
        for (const MeshEdge& edge : result.vEdges)
            if (edge.bCrowded)
                return fail("edge " + edgeName(edge.from, edge.to) + " has triangles that overlap, one of them " +
                            triangleName(edge.left));
        return true;
    }

    // An edge that crosses others, or holds a vertex, cannot have triangles on both sides everywhere: looking at the
    // border is enough.
    bool checkBorderContacts()
    {
        std::vector<VertexPair> vBorder;
        for (const MeshEdge& edge : result.vEdges)
            if (edge.bBorder)
                vBorder.push_back({edge.from, edge.to});
        SegmentContacts contacts = findContacts(mesh.vertices.vCoords, vBorder);
        if (!contacts.vTouches.empty()) {
            const auto& touch = contacts.vTouches.front();
            const VertexPair& edge = vBorder[touch.segment];
            return fail("vertex " + vertexWithPlace(touch.vertex) + " lies on the edge " + edgeName(edge[0], edge[1]));
        }
        if (!contacts.vCrossings.empty()) {
            const VertexPair& s = vBorder[contacts.vCrossings.front()[0]];
            const VertexPair& t = vBorder[contacts.vCrossings.front()[1]];
            return fail("edges " + edgeName(s[0], s[1]) + " and " + edgeName(t[0], t[1]) + " cross");
        }
        return true;
    }

    // The number of triangles over a place changes by one from side to side of the border, and nowhere else: triangles
    // run counterclockwise, and each inner edge has one on either side. It is 0 or 1 everywhere where the border edges
    // at each vertex take turns between begin and end of the mesh, and where it is right beside one vertex of each
    // connected part of the border.
    bool checkOverlap()
    {
        std::vector<BorderEnd> vEnds;
        for (const MeshEdge& edge : result.vEdges)
            if (edge.bBorder) {
                vEnds.push_back({edge.from, edge.to, true});
                vEnds.push_back({edge.to, edge.from, false});
            }
        std::sort(vEnds.begin(), vEnds.end(), [this](const BorderEnd& a, const BorderEnd& b) {
            return a.vertex != b.vertex ? a.vertex < b.vertex : isBefore(a, b);
        });
        for (std::size_t i = 0; i < vEnds.size();) { // every turn takes the ends at a vertex
            std::size_t end = i + 1;
            while (end < vEnds.size() && vEnds[end].vertex == vEnds[i].vertex)
                ++end;
            for (std::size_t k = i; k < end; ++k)
                if (vEnds[k].bOutgoing == vEnds[k + 1 == end ? i : k + 1].bOutgoing)
                    return fail("triangles overlap at vertex " + vertexWithPlace(vEnds[i].vertex));
            i = end;
        }
        return checkCovering(vEnds);
    }

    // Counterclockwise order of directions around a common vertex, beginning straight down, so that the direction to
    // the left of a lowest-leftmost vertex lies between the last and the first.
    bool isBefore(const BorderEnd& a, const BorderEnd& b) const
    {
        const Coord& centre = at(a.vertex);
        bool bRightA = isRight(centre, at(a.other)), bRightB = isRight(centre, at(b.other));
        if (bRightA != bRightB)
            return bRightA;
        return orientation(centre, at(a.other), at(b.other)) > 0;
    }

    static bool isRight(const Coord& centre, const Coord& p)
    {
        return p.x > centre.x || (p.x == centre.x && p.y > centre.y);
    }

    // Looks beside the leftmost vertex of each connected part of the border.
    bool checkCovering(const std::vector<BorderEnd>& vEnds)
    {
        std::vector<std::uint32_t> vLeftmost = leftmostOfParts(vEnds);
        if (vLeftmost.empty())
            return true;
        std::vector<VertexPair> vBorder;
        std::vector<Bounds> vBounds;
        double leftmostX = at(vEnds.front().vertex).x;
        for (const BorderEnd& end : vEnds)
            if (end.bOutgoing) {
                vBorder.push_back({end.vertex, end.other});
                vBounds.push_back(Bounds::ofSegment(at(end.vertex), at(end.other)));
                leftmostX = std::min({leftmostX, at(end.vertex).x, at(end.other).x});
            }
        BoxTree tree(vBounds);
        for (std::uint32_t vertex : vLeftmost) {
            auto q_it = std::lower_bound(vEnds.begin(), vEnds.end(), vertex,
                                         [](const BorderEnd& end, std::uint32_t v) { return end.vertex < v; });
            // All edges run to the right here; the lowest one has the mesh on its left, above, or on its other side.
            int expected = q_it->bOutgoing ? 0 : 1;
            if (coveringLeftOf(vertex, leftmostX, tree, vBorder) != expected)
                return fail("triangles overlap around vertex " + vertexWithPlace(vertex));
        }
        return true;
    }

    // The lexicographically least vertex of each connected part of the border.
    std::vector<std::uint32_t> leftmostOfParts(const std::vector<BorderEnd>& vEnds) const
    {
        std::vector<std::uint32_t> vParent(mesh.vertices.size());
        std::iota(vParent.begin(), vParent.end(), 0u);
        auto isLess = [this](std::uint32_t a, std::uint32_t b) {
            return std::tie(at(a).x, at(a).y) < std::tie(at(b).x, at(b).y);
        };
        auto rootOf = [&vParent](std::uint32_t v) { // halves the path, so it ends at the root
            while (vParent[v] != v)
                v = vParent[v] = vParent[vParent[v]];
            return v;
        };
        for (const BorderEnd& end : vEnds) {
            std::uint32_t a = rootOf(end.vertex), b = rootOf(end.other);
            if (a != b)
                isLess(a, b) ? vParent[b] = a : vParent[a] = b;
        }
        std::vector<std::uint32_t> vRoots;
        for (std::size_t i = 0; i < vEnds.size(); ++i)
            if ((i == 0 || vEnds[i].vertex != vEnds[i - 1].vertex) && rootOf(vEnds[i].vertex) == vEnds[i].vertex)
                vRoots.push_back(vEnds[i].vertex);
        return vRoots;
    }

    // How many triangles cover the place just left of a vertex, by the border edges that a ray to the left meets. The
    // ray runs just below the vertex's height: an edge that begins at that height counts where it leads down.
    int coveringLeftOf(std::uint32_t vertex, double leftmostX, const BoxTree& tree,
                       const std::vector<VertexPair>& vBorder) const
    {
        const Coord& p = at(vertex);
        int covering = 0;
        tree.query(Bounds::ofSegment({leftmostX, p.y}, p), [&](std::uint32_t i) {
            const Coord& a = at(vBorder[i][0]);
            const Coord& b = at(vBorder[i][1]);
            bool bDown = b.y < p.y && p.y <= a.y;
            bool bUp = a.y < p.y && p.y <= b.y;
            if (bDown && orientation(a, b, p) > 0)
                ++covering;
            else if (bUp && orientation(a, b, p) < 0)
                --covering;
        });
        return covering;
    }

    bool checkConstraints()
    {
        std::size_t numOnEdges = 0;
        for (const MeshEdge& edge : result.vEdges)
            numOnEdges += edge.bConstraint;
        std::vector<VertexPair> vWanted;
        for (const MeshData::Edge& edge : mesh.vEdges)
            if (edge.bConstraint)
                vWanted.push_back({std::min(edge.from, edge.to), std::max(edge.from, edge.to)});
        std::sort(vWanted.begin(), vWanted.end());
        vWanted.erase(std::unique(vWanted.begin(), vWanted.end()), vWanted.end());
        if (vWanted.size() == numOnEdges)
            return true;
        std::vector<VertexPair> vThere;
        for (const MeshEdge& edge : result.vEdges)
            vThere.push_back({std::min(edge.from, edge.to), std::max(edge.from, edge.to)});
        std::sort(vThere.begin(), vThere.end());
        for (const VertexPair& pair : vWanted)
            if (!std::binary_search(vThere.begin(), vThere.end(), pair))
                return fail("the constraint " + edgeName(pair[0], pair[1]) + " is no edge of a triangle");
        return true;
    }

    void checkDelaunay()
    {
        for (const MeshEdge& edge : result.vEdges) {
            if (edge.bBorder)
                continue;
            const auto& a = mesh.vTriangles[edge.left];
            std::uint32_t apex = oppositeCorner(mesh.vTriangles[edge.right], edge);
            if (inCircle(at(a[0]), at(a[1]), at(a[2]), at(apex)) <= 0)
                continue;
            if (edge.bConstraint) {
                ++result.numConstraintsNotDelaunay;
                continue;
            }
            if (result.numNonDelaunay++ == 0)
                result.delaunayDefect = "edge " + edgeName(edge.from, edge.to) + " is not Delaunay: vertex " +
                                        vertexWithPlace(apex) + " lies inside the circle of " + triangleName(edge.left);
        }
    }

    static std::uint32_t oppositeCorner(const std::array<std::uint32_t, 3>& aCorners, const MeshEdge& edge)
    {
        for (std::uint32_t corner : aCorners)
            if (corner != edge.from && corner != edge.to)
                return corner;
        return aCorners[0];
    }

    MeshData& mesh;
    MeshCheckResult result;
};

} // namespace

MeshCheckResult checkMesh(MeshData& mesh)
{
    return MeshChecker(mesh).check();
}

} // namespace quor2d_tool
