#include "tests/support/MeshCheck.h"

#include "core/Dt2.h"

#include <gmpxx.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

namespace ZELK_QUOR2D
{
namespace test
{

namespace
{

constexpr double kRoundoff = 0x1p-53;

bool isInteger(double value)
{
    return value == std::nearbyint(value);
}

int signOf(double value)
{
    return value > 0.0 ? 1 : value < 0.0 ? -1 : 0;
}

int exactOrientationSign(const Point2& a, const Point2& b, const Point2& c)
{
    const mpq_class abx = mpq_class(b.x()) - mpq_class(a.x()), aby = mpq_class(b.y()) - mpq_class(a.y());
    const mpq_class acx = mpq_class(c.x()) - mpq_class(a.x()), acy = mpq_class(c.y()) - mpq_class(a.y());
    return sgn(mpq_class(abx * acy - aby * acx));
}

int exactInCircleSign(const Point2& a, const Point2& b, const Point2& c, const Point2& q)
{
    const Point2* const aPoints[3] = {&a, &b, &c};
    mpq_class x[3], y[3], sq[3];
    for (int i = 0; i < 3; ++i) {
        x[i] = mpq_class(aPoints[i]->x()) - mpq_class(q.x());
        y[i] = mpq_class(aPoints[i]->y()) - mpq_class(q.y());
        sq[i] = x[i] * x[i] + y[i] * y[i];
    }
    const mpq_class det =
        sq[0] * (x[1] * y[2] - x[2] * y[1]) + sq[1] * (x[2] * y[0] - x[0] * y[2]) + sq[2] * (x[0] * y[1] - x[1] * y[0]);
    return sgn(det);
}

std::string describe(const Point2* p)
{
    std::ostringstream stream;
    stream.precision(17);
    if (p)
        stream << "(" << p->x() << ", " << p->y() << ")";
    else
        stream << "(null)";
    return stream.str();
}

std::string describe(const Triangle2* pT)
{
    return "[" + describe(pT->getCorner(0)) + " " + describe(pT->getCorner(1)) + " " + describe(pT->getCorner(2)) + "]";
}

// Every check...() returns an empty text when all is well.
class MeshChecker
{
public:
    MeshChecker(const std::vector<Triangle2*>& triangles, const std::vector<Point2*>& vertices,
                const MeshCheckOptions& checkOptions)
        : vTriangles(triangles), vVertices(vertices), options(checkOptions),
          sTriangles(triangles.begin(), triangles.end()), sVertices(vertices.begin(), vertices.end())
    {
    }

    std::string findDefect()
    {
        std::string defect = checkVertexList();
        if (defect.empty() && vTriangles.empty())
            return checkCollinear();
        using Check = std::string (MeshChecker::*)();
        for (const Check check : {&MeshChecker::checkTriangles, &MeshChecker::checkIncidence, &MeshChecker::checkBorder,
                                  &MeshChecker::checkCount, &MeshChecker::checkCircles})
            if (defect.empty())
                defect = (this->*check)();
        return defect;
    }

private:
    std::string checkVertexList()
    {
        if (sTriangles.size() != vTriangles.size())
            return "a triangle is listed twice";
        if (sVertices.size() != vVertices.size())
            return "a vertex is listed twice";
        if (sVertices.count(nullptr) > 0)
            return "a null vertex is listed";
        vSorted.assign(vVertices.begin(), vVertices.end());
        std::sort(vSorted.begin(), vSorted.end(), [](const Point2* p, const Point2* q) { return *p < *q; });
        for (std::size_t i = 1; i < vSorted.size(); ++i)
            if (*vSorted[i] == *vSorted[i - 1])
                return "two vertices at " + describe(vSorted[i]);
        return "";
    }

    std::string checkCollinear() const
    {
        for (const Point2* p : vSorted) {
            if (p->getIncidentTriangle())
                return "no triangles, but " + describe(p) + " has an incident one";
            if (orientationSign(*vSorted.front(), *vSorted.back(), *p) != 0)
                return "no triangles, but " + describe(p) + " is not collinear with the others";
        }
        return "";
    }

    std::string checkTriangles()
    {
        for (const Triangle2* pT : vTriangles) {
            for (int i = 0; i < 3; ++i)
                if (sVertices.count(pT->getCorner(i)) == 0)
                    return "a corner is no live vertex: " + describe(pT);
            if (orientationSign(*pT->getCorner(0), *pT->getCorner(1), *pT->getCorner(2)) <= 0)
                return "not counterclockwise: " + describe(pT);
            for (int i = 0; i < 3; ++i) {
                const std::string defect = checkLink(pT, i);
                if (!defect.empty())
                    return defect;
            }
        }
        return "";
    }

    std::string checkLink(const Triangle2* pT, int i)
    {
        const Triangle2* const pOpp = pT->getOppositeTriangle(i);
        const Point2* const pSrc = pT->getCorner((i + 1) % 3);
        const Point2* const pTrg = pT->getCorner((i + 2) % 3);
        if (!pOpp) {
            if (!mNextOnBorder.emplace(pSrc, pTrg).second)
                return "two border edges leave " + describe(pSrc);
            return "";
        }
        if (sTriangles.count(pOpp) == 0)
            return "a dead neighbour of " + describe(pT);
        for (int j = 0; j < 3; ++j)
            if (pOpp->getOppositeTriangle(j) == pT && pOpp->getCorner((j + 1) % 3) == pTrg &&
                pOpp->getCorner((j + 2) % 3) == pSrc)
                return "";
        return "no link back to " + describe(pT) + " from " + describe(pOpp);
    }

    std::string checkIncidence()
    {
        for (const Point2* p : vVertices) {
            const Triangle2* const pT = p->getIncidentTriangle();
            if (!pT)
                return "no incident triangle at " + describe(p);
            if (sTriangles.count(pT) == 0)
                return "a dead incident triangle at " + describe(p);
            if (pT->getCorner(0) != p && pT->getCorner(1) != p && pT->getCorner(2) != p)
                return "no corner of its incident triangle: " + describe(p);
        }
        return "";
    }

    // The convex hull, counterclockwise from the smallest vertex, with the vertices inside its edges (Andrew 1979).
    std::vector<const Point2*> convexHull() const
    {
        std::vector<const Point2*> vHull;
        const auto addChain = [&vHull](auto first, auto last) {
            const std::size_t start = vHull.size();
            for (; first != last; ++first) {
                while (vHull.size() >= start + 2 &&
                       orientationSign(*vHull[vHull.size() - 2], *vHull.back(), **first) < 0)
                    vHull.pop_back();
                vHull.push_back(*first);
            }
            vHull.pop_back(); // begins the other chain
        };
        addChain(vSorted.begin(), vSorted.end());
        addChain(vSorted.rbegin(), vSorted.rend());
        return vHull;
    }

    std::string checkBorder()
    {
        const std::vector<const Point2*> vHull = convexHull();
        if (vHull.size() != mNextOnBorder.size())
            return "the border has " + std::to_string(mNextOnBorder.size()) + " edges, the convex hull " +
                   std::to_string(vHull.size());
        for (std::size_t i = 0; i < vHull.size(); ++i) {
            const auto it = mNextOnBorder.find(vHull[i]);
            const Point2* const pExpected = vHull[(i + 1) % vHull.size()];
            if (it == mNextOnBorder.end() || it->second != pExpected)
                return "no border edge " + describe(vHull[i]) + " - " + describe(pExpected);
        }
        return "";
    }

    std::string checkCount()
    {
        const std::size_t expected = 2 * vVertices.size() - mNextOnBorder.size() - 2;
        if (vTriangles.size() == expected)
            return "";
        return std::to_string(vTriangles.size()) + " triangles instead of " + std::to_string(expected);
    }

    std::string checkCircles()
    {
        if (!options.bDelaunay)
            return "";
        for (const Triangle2* pT : vTriangles) {
            for (int i = 0; i < 3; ++i) {
                const Triangle2* const pOpp = pT->getOppositeTriangle(i);
                if (!pOpp || std::less<const Triangle2*>()(pOpp, pT)) // the sign is the same from either side
                    continue;
                int j = 0;
                while (pOpp->getOppositeTriangle(j) != pT)
                    ++j;
                const Point2* const pApex = pOpp->getCorner(j);
                if (inCircleSign(*pT->getCorner(0), *pT->getCorner(1), *pT->getCorner(2), *pApex) <= 0)
                    continue;
                if (!options.isExemptEdge ||
                    !options.isExemptEdge(pT->getCorner((i + 1) % 3), pT->getCorner((i + 2) % 3)))
                    return describe(pApex) + " is inside the circle of " + describe(pT);
            }
        }
        return "";
    }

    const std::vector<Triangle2*>& vTriangles;
    const std::vector<Point2*>& vVertices;
    const MeshCheckOptions& options;
    std::unordered_set<const Triangle2*> sTriangles;
    std::unordered_set<const Point2*> sVertices;
    std::vector<const Point2*> vSorted;
    std::unordered_map<const Point2*, const Point2*> mNextOnBorder;
};

template <class Triangulation>
::testing::AssertionResult checkTriangulation(const Triangulation& dt, const MeshCheckOptions& options)
{
    std::vector<Triangle2*> vTriangles;
    std::vector<Point2*> vVertices;
    dt.getTrianglePointers(vTriangles);
    dt.getVertexPointers(vVertices);
    if (vTriangles.size() != dt.numberOfTriangles())
        return ::testing::AssertionFailure() << "numberOfTriangles() differs from the list of triangles";
    if (vVertices.size() > dt.numberOfPoints())
        return ::testing::AssertionFailure() << "numberOfPoints() is smaller than the list of vertices";
    if (!vTriangles.empty() && !dt.is2D())
        return ::testing::AssertionFailure() << "triangles without is2D()";
    const std::string defect = findMeshDefect(vTriangles, vVertices, options);
    if (defect.empty())
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << defect;
}

} // namespace

// The bound is twice the one of Shewchuk (1997); beyond the guards rounding may be absolute instead of relative.
int orientationSign(const Point2& a, const Point2& b, const Point2& c)
{
    const double abx = b.x() - a.x(), aby = b.y() - a.y();
    const double acx = c.x() - a.x(), acy = c.y() - a.y();
    const double left = abx * acy, right = aby * acx;
    const double sum = std::fabs(left) + std::fabs(right);
    if (sum > 1e-280 && std::fabs(left - right) > 8.0 * kRoundoff * sum)
        return signOf(left - right);
    return exactOrientationSign(a, b, c);
}

int inCircleSign(const Point2& a, const Point2& b, const Point2& c, const Point2& q)
{
    const Point2* const aPoints[3] = {&a, &b, &c};
    double x[3], y[3], sq[3];
    bool bIntegers = isInteger(q.x()) && isInteger(q.y());
    for (int i = 0; i < 3; ++i) {
        bIntegers = bIntegers && isInteger(aPoints[i]->x()) && isInteger(aPoints[i]->y());
        x[i] = aPoints[i]->x() - q.x();
        y[i] = aPoints[i]->y() - q.y();
        sq[i] = x[i] * x[i] + y[i] * y[i];
    }
    double det = 0.0, permanent = 0.0;
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3, k = (i + 2) % 3;
        det += sq[i] * (x[j] * y[k] - x[k] * y[j]);
        permanent += sq[i] * (std::fabs(x[j] * y[k]) + std::fabs(x[k] * y[j]));
    }
    // No intermediate value is rounded: grids of small integers are decided here, their zeros included.
    const double largest = sq[0] + sq[1] + sq[2];
    if (bIntegers && largest < 0x1p52 && permanent < 0x1p52)
        return signOf(det);
    if (permanent > 1e-250 && largest < 1e40 && std::fabs(det) > 20.0 * kRoundoff * permanent)
        return signOf(det);
    return exactInCircleSign(a, b, c, q);
}

std::string findMeshDefect(const std::vector<Triangle2*>& vTriangles, const std::vector<Point2*>& vVertices,
                           const MeshCheckOptions& options)
{
    return MeshChecker(vTriangles, vVertices, options).findDefect();
}

::testing::AssertionResult isValidMesh(const Quor_2D& dt, const MeshCheckOptions& options)
{
    return checkTriangulation(dt, options);
}

::testing::AssertionResult isValidMesh(const Dt2& dt, const MeshCheckOptions& options)
{
    return checkTriangulation(dt, options);
}

void expectValid(const Quor_2D& dt, const MeshCheckOptions& options)
{
    EXPECT_TRUE(isValidMesh(dt, options));
}

void expectValid(const Dt2& dt, const MeshCheckOptions& options)
{
    EXPECT_TRUE(isValidMesh(dt, options));
}

} // namespace test
} // namespace ZELK_QUOR2D
