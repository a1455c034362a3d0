#include "predicates/PredicateTest.h"
#include "predicates/RoundingGuard.h"
#include "tests/fuzz/ByteReader.h"
#include "tests/fuzz/Targets.h"
#include "tests/predicates/Inputs.h"
#include "tests/predicates/Rational.h"
#include "tests/support/HostMode.h"

#include <cfenv>
#include <cmath>

namespace fuzz
{

namespace
{

using namespace ZELK_QUOR2D;

const int kRoundings[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};

// Eight coordinates. Only few patterns of 64 bits are degenerate, so most of them may be taken from earlier ones, a
// few units in the last place away or some powers of two larger.
void readCoordinates(ByteReader& in, double (&aCoordinates)[8])
{
    for (int i = 0; i < 8; ++i) {
        const int tag = in.byte();
        if (tag < 64 || i == 0)
            aCoordinates[i] = in.rawDouble();
        else if (tag < 128)
            aCoordinates[i] = in.byte() - 128.0;
        else if (tag < 192)
            aCoordinates[i] = inputs::moveByUlps(aCoordinates[(tag & 7) % i], ((tag >> 3) & 7) - 4);
        else
            aCoordinates[i] = std::ldexp(aCoordinates[(tag & 7) % i], 4 * in.byte() - 510) * ((tag & 8) ? -1.0 : 1.0);
    }
}

bool isDecidedAs(int stage, int expected)
{
    return stage == PredicateTest::kUndecided || stage == expected;
}

// Counts as the documented rule does: exactly one corner shares the x of q, exactly one its y, and the others agree.
bool isRectangle(const Point2 (&p)[4])
{
    int numSameX = 0, numSameY = 0;
    double otherX[3], otherY[3];
    for (int i = 0; i < 3; ++i) {
        if (p[i].x() == p[3].x())
            ++numSameX;
        else
            otherX[i - numSameX] = p[i].x();
        if (p[i].y() == p[3].y())
            ++numSameY;
        else
            otherY[i - numSameY] = p[i].y();
    }
    return numSameX == 1 && numSameY == 1 && otherX[0] == otherX[1] && otherY[0] == otherY[1];
}

void checkOrientation(PredicateTest& predicates, const Point2 (&p)[4], int expected, const test::HostMode& host)
{
    require(predicates.getOrientation2(&p[0], &p[1], &p[2]) == expected, "orientation");
    require(predicates.getOrientation2(&p[1], &p[2], &p[0]) == expected, "orientation, turned");
    require(predicates.getOrientation2(&p[1], &p[0], &p[2]) == oracle::opposite(expected), "orientation, mirrored");
    require(PredicateTest::orientation(p[0], p[1], p[2]) == expected, "orientation without an instance");
    require(isDecidedAs(PredicateTest::filterOrientation(p[0], p[1], p[2]), expected), "orientation filter");
    require(isDecidedAs(PredicateTest::intervalOrientation(p[0], p[1], p[2]), expected), "interval orientation");
    require(predicates.exactOrientation(p[0], p[1], p[2]) == expected, "exact orientation");
    require(host.isUnchanged(), "the floating-point mode has changed");
}

void checkInCircle(PredicateTest& predicates, const Point2 (&p)[4], int expected, bool bRectangle,
                   const test::HostMode& host)
{
    require(predicates.inCircleSign(&p[0], &p[1], &p[2], &p[3]) == expected, "in-circle");
    require(predicates.inCircleSign(&p[1], &p[2], &p[0], &p[3]) == expected, "in-circle, turned");
    require(predicates.inCircleSign(&p[1], &p[0], &p[2], &p[3]) == oracle::opposite(expected), "in-circle, mirrored");
    require(predicates.inCircleSign(&p[0], &p[1], &p[3], &p[2]) == oracle::opposite(expected), "in-circle, exchanged");
    require(isDecidedAs(PredicateTest::filterInCircle(p[0], p[1], p[2], p[3]), expected), "in-circle filter");
    require(predicates.exactInCircle(p[0], p[1], p[2], p[3]) == expected, "exact in-circle");

    Point2 aCorners[] = {p[0], p[1], p[2]};
    Triangle2 triangle;
    for (int i = 0; i < 3; ++i)
        triangle.setVertexPointer(i, &aCorners[i]);
    const int withRule = bRectangle ? static_cast<int>(ORI2_POSITIVE) : expected;
    require(predicates.circleIncSide(&triangle, &p[3]) == withRule, "circleIncSide");
    require(predicates.circleInc(&triangle, &p[3]) == (withRule == ORI2_POSITIVE), "circleInc");
    require(host.isUnchanged(), "the floating-point mode has changed");
}

} // namespace

void runPredicates(const std::uint8_t* pData, std::size_t numBytes)
{
    ByteReader in(pData, numBytes);
    const int mode = in.byte();
    double c[8];
    readCoordinates(in, c);
    const Point2 p[4] = {{c[0], c[1]}, {c[2], c[3]}, {c[4], c[5]}, {c[6], c[7]}};
    bool bFinite[4];
    for (int i = 0; i < 4; ++i)
        bFinite[i] = std::isfinite(p[i].x()) && std::isfinite(p[i].y());
    const bool bThreeFinite = bFinite[0] && bFinite[1] && bFinite[2];
    const bool bAllFinite = bThreeFinite && bFinite[3];
    const int turn = bThreeFinite ? oracle::orientation(p[0], p[1], p[2]) : static_cast<int>(ORI2_ZERO);
    const int side = bAllFinite ? oracle::inCircle(p[0], p[1], p[2], p[3]) : static_cast<int>(ORI2_ZERO);
    const bool bRectangle = bAllFinite && isRectangle(p);

    PredicateTest predicates;
    const test::HostMode host(kRoundings[mode & 3], (mode & 4) != 0);
    checkOrientation(predicates, p, turn, host);
    checkInCircle(predicates, p, side, bRectangle, host);
    if (bAllFinite) {
        RoundingGuard guard;
        require(isDecidedAs(PredicateTest::expansionOrientation(p[0], p[1], p[2]), turn), "expansion orientation");
        require(isDecidedAs(PredicateTest::expansionInCircle(p[0], p[1], p[2], p[3]), side), "expansion in-circle");
    }
}

} // namespace fuzz
