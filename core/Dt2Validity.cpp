#include "core/Dt2.h"

#include "output/Message.h"

#include <iostream>

namespace ZELK_QUOR2D
{

namespace
{

bool hasThreeCorners(const Triangle2* pT)
{
    const Point2 *const p0 = pT->getCorner(0), *const p1 = pT->getCorner(1), *const p2 = pT->getCorner(2);
    return p0 && p1 && p2 && p0 != p1 && p1 != p2 && p2 != p0;
}

// A neighbour found by a broken link may be a dead triangle, which has no corners to print.
void print(const Triangle2* pT)
{
    if (pT->getCorner(0) && pT->getCorner(1) && pT->getCorner(2))
        std::cout << *pT;
    else
        std::cout << "Triangle(" << static_cast<const void*>(pT) << ")" << std::endl;
}

// Whether edge j of pN is edge i of pT, seen from the other side.
bool isSameEdge(const Triangle2* pT, int i, const Triangle2* pN, int j)
{
    return pT->getCorner(next(i)) == pN->getCorner(prev(j)) && pT->getCorner(prev(i)) == pN->getCorner(next(j));
}

// The text of the defect in the link across edge i of pT; null when there is none.
const char* findLinkDefect(const Triangle2* pT, int i)
{
    const Triangle2* const pN = pT->getOppositeTriangle(i);
    const char* defect = "Inconsistant neighborships:"; // deliberate spelling
    for (int j = 0; j < 3; ++j) {
        if (pN->getOppositeTriangle(j) != pT)
            continue;
        if (isSameEdge(pT, i, pN, j))
            return nullptr;
        defect = "Neighbor found but inconsistent intra triangle indices:";
    }
    return defect;
}

bool checkLinks(const std::vector<Triangle2*>& vTriangles, const std::string& place)
{
    for (const Triangle2* pT : vTriangles) {
        if (!hasThreeCorners(pT)) {
            reportError(place, "Less than three different neighbors"); // deliberate: corners are meant
            return false;
        }
        for (int i = 0; i < 3; ++i) {
            const Triangle2* const pN = pT->getOppositeTriangle(i);
            const char* const defect = pN ? findLinkDefect(pT, i) : nullptr;
            if (!defect)
                continue;
            reportError(place, defect);
            print(pT);
            print(pN);
            return false;
        }
    }
    return true;
}

} // namespace

bool Dt2::checkValidity(bool bCheckEmptyCircle, const std::string& s)
{
    std::cout << "CheckValidity has been started, name=" << s << std::endl;
    if (!fullDimensional || !hasTriangles()) {
        reportWarning("checkValidity(" + s + ")",
                      "not fulldimensional yet (empty or all points collinear), number of points: " +
                          std::to_string(numberOfPoints()) + ". Returning true");
        return true;
    }
    const std::string place = "Quor_2D::CheckValidity(" + s + ")";
    std::vector<Triangle2*> vTriangles;
    getTrianglePointers(vTriangles);
    if (!checkLinks(vTriangles, place) || (bCheckEmptyCircle && !checkCircles(vTriangles, place)))
        return false;
    reportInfo(place, "Valid triangulation");
    return true;
}

// Needs consistent links.
bool Dt2::checkCircles(const std::vector<Triangle2*>& vTriangles, const std::string& place)
{
    for (Triangle2* pT : vTriangles) {
        for (int i = 0; i < 3; ++i) {
            if (!isCircleViolated(pT, i) || isConstraint(pT, i))
                continue;
            const Triangle2* const pN = pT->getOppositeTriangle(i);
            reportError(place, "Sphere inclusion test failed "); // deliberate: the blank at the end
            std::cout << *pT << *pN->getCorner(pN->getIntraTriangleIndex(pT)) << std::endl;
            return false;
        }
    }
    return true;
}

} // namespace ZELK_QUOR2D
