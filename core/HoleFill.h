#pragma once

#include "Point2.h"
#include "Triangle2.h"
#include "core/StarRing.h"
#include "core/TriangleLinks.h"
#include "core/VertexStar.h"
#include "predicates/PredicateTest.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace ZELK_QUOR2D
{

/// Fills the hole that a vertex inside the hull leaves with the Delaunay triangulation of the N corners of its star.
///
/// Ears are cut in the order that StarRing describes; the last four corners are divided by an exact test. All is
/// planned before anything changes, and exact tests have the last word: if all N - 2 triangles are counterclockwise,
/// they fill the hole without overlap. Edges that rounding made not Delaunay are named afterwards.
///
/// Stars are small and each is different, so that a processor hardly ever guesses a jump right. Here the compiler knows
/// how often loops run, and little else is a jump (Devillers 2011, too, has code of its own for each small degree, but
/// decides by trees of tests).
template <int N>
class HoleFill
{
public:
    /// @param aStar  N spokes
    explicit HoleFill(const VertexStar::Spoke* aStar)
    {
        for (int k = 0; k < N; ++k) {
            aCorners[k] = aStar[k].pCorner;
            aRecords[k] = aStar[k].pT;
            aSides[k] = k;
            aNext[k] = after(k);
            aPrev[k] = before(k);
        }
    }

    /// Decides on the triangles. @return false where rounding led astray
    bool plan(const Point2* pVtx, PredicateTest& predicates)
    {
        if constexpr (N > 4)
            if (!cutEars(pVtx))
                return false;
        if constexpr (N > 3)
            divideFour(predicates);
        keepLast();
        return N == 3 || areCounterclockwise(predicates);
    }

    /// Makes them, from records of the star.
    void write(const Point2* pVtx)
    {
        for (int k = 0; k < N; ++k)
            aLinks[k] = aRecords[k]->getOppositeTriangle(indexOf(aRecords[k], pVtx));
        Triangle2 sink; // takes what need not be written
        for (const Ear& ear : aEars) {
            Triangle2* const pT = aRecords[ear.a];
            Triangle2* const pAcrossAB = aLinks[ear.sideAB];
            Triangle2* const pAcrossWA = aLinks[ear.sideWA];
            Triangle2* const pEarAB = ear.sideAB >= N ? pAcrossAB : &sink; // an outer one has this neighbour already
            pEarAB->setOppTriangle(0, pT);
            linkBack(pAcrossWA ? pAcrossWA : &sink, ear.sideWA, aCorners[ear.a], pT);
            setCorners(pT, aCorners[ear.a], aCorners[ear.b], aCorners[ear.w]);
            setNeighbors(pT, nullptr, pAcrossWA, pAcrossAB);
            aCorners[ear.a]->setIncidentTriangle(pT);
        }
        const Ear& last = aEars[N - 3];
        Triangle2* const pT = aRecords[last.a];
        Triangle2* const pAcrossBW = aLinks[sideBW];
        linkBack(pAcrossBW ? pAcrossBW : &sink, sideBW, aCorners[last.w], pT);
        pT->setOppTriangle(0, pAcrossBW);
        aCorners[last.b]->setIncidentTriangle(pT);
        aCorners[last.w]->setIncidentTriangle(pT);
    }

    /// Calls visit(Triangle2*) for the two records that are not needed any more.
    template <class Visitor>
    void forEachLeftOver(Visitor visit) const
    {
        visit(aRecords[aEars[N - 3].b]);
        visit(aRecords[aEars[N - 3].w]);
    }

    /// Calls visit(Triangle2*) for each triangle whose edge 0 is not Delaunay. The edge made last was chosen exactly.
    template <class Visitor>
    void forEachViolation(PredicateTest& predicates, Visitor visit) const
    {
        for (int k = 0; k < N - 4; ++k) {
            const Ear& ear = aEars[k];
            if (predicates.inCircleSign(aCorners[ear.a], aCorners[ear.b], aCorners[ear.w], aCorners[aApexes[N + k]]) ==
                ORI2_POSITIVE)
                visit(aRecords[ear.a]);
        }
    }

private:
    static_assert(N >= 3 && N <= 16, "keys have room for a corner below 16");

    // Corner a left the border of the hole, between w and b. Its record becomes the triangle (a,b,w).
    struct Ear {
        int a, b, w;
        int sideAB, sideWA;
    };

    static constexpr std::int64_t kIndexBits = 15;
    static constexpr std::int64_t kNever = 0x7ff0000000000000; // the bits of infinity
    static constexpr std::int64_t kSignless = std::numeric_limits<std::int64_t>::max();

    static constexpr int after(int k) { return k + 1 < N ? k + 1 : 0; }
    static constexpr int before(int k) { return k > 0 ? k - 1 : N - 1; }

    // All but four corners, each time the one with the smallest key.
    bool cutEars(const Point2* pVtx)
    {
        computeKeys(*pVtx);
        for (int k = 0; k < N - 4; ++k) {
            std::int64_t smallest = aKeys[0];
            for (int i = 1; i < N; ++i)
                smallest = std::min(smallest, aKeys[i]);
            if (smallest >= kNever)
                return false;
            const int a = static_cast<int>(smallest & kIndexBits);
            const int w = aPrev[a], b = aNext[a];
            cut(a);
            aKeys[a] = kNever;
            if (k < N - 5) {
                aPlaces[w].cross = aPlaces[w].crossWith(aPlaces[b]);
                computeKey(aPrev[w], w, b);
                computeKey(w, b, aNext[b]);
            }
        }
        return true;
    }

    void computeKeys(const Point2& center)
    {
        for (int k = 0; k < N; ++k)
            aPlaces[k] = StarPlace(*aCorners[k], center);
        for (int k = 0; k < N; ++k)
            aPlaces[k].cross = aPlaces[k].crossWith(aPlaces[after(k)]);
        for (int k = 0; k < N; ++k)
            computeKey(before(k), k, after(k));
    }

    // The key is the power, and never for what is no ear. But for rounding the power is not negative, so that its bits
    // have its order; the lowest ones name the corner.
    void computeKey(int w, int a, int b)
    {
        const EarPower ear(aPlaces[w], aPlaces[a], aPlaces[b]);
        std::int64_t bits;
        std::memcpy(&bits, &ear.power, sizeof(bits));
        const std::int64_t mask = -static_cast<std::int64_t>(ear.area > 0.0);
        bits = (bits & mask & kSignless) | (kNever & ~mask);
        aKeys[a] = (bits & ~kIndexBits) | a;
    }

    // The sign is right for a reflex corner, too: it then lies in the triangle of the others.
    void divideFour(PredicateTest& predicates)
    {
        const int p = oneLeft;
        const int q = aNext[p], r = aNext[q], s = aNext[r];
        const bool bInside =
            predicates.inCircleSign(aCorners[p], aCorners[q], aCorners[r], aCorners[s]) == ORI2_POSITIVE;
        cut(bInside ? p : q);
    }

    void cut(int a)
    {
        const int w = aPrev[a], b = aNext[a];
        addEar(a);
        aSides[w] = N + numCut;
        aLinks[N + numCut] = aRecords[a];
        aNext[w] = b;
        aPrev[b] = w;
        oneLeft = w;
        ++numCut;
    }

    void keepLast()
    {
        addEar(oneLeft);
        sideBW = aSides[aNext[oneLeft]];
        aApexes[sideBW] = oneLeft;
    }

    void addEar(int a)
    {
        const int w = aPrev[a], b = aNext[a];
        aEars[numCut] = Ear{a, b, w, aSides[a], aSides[w]};
        aApexes[aSides[a]] = w;
        aApexes[aSides[w]] = b;
    }

    bool areCounterclockwise(PredicateTest& predicates) const
    {
        bool bAll = true;
        for (const Ear& ear : aEars)
            bAll &= predicates.getOrientation2(aCorners[ear.w], aCorners[ear.a], aCorners[ear.b]) == ORI2_POSITIVE;
        return bAll;
    }

    // Tells the triangle beyond a side that pT is its neighbour there. Found by the corner at which the side ends, seen
    // from the hole: an outer triangle may have two sides of it.
    static void linkBack(Triangle2* pBeyond, int side, const Point2* pEnd, Triangle2* pT)
    {
        const int outerMask = side < N ? ~0 : 0; // an ear has its edge 0 there
        pBeyond->setOppTriangle(indexBefore(pBeyond, pEnd) & outerMask, pT);
    }

    Point2* aCorners[N];
    Triangle2* aRecords[N]; // of the star: the vertex, this corner and the next one
    int aNext[N];           // corner on the border of what is left of the hole
    int aPrev[N];

    // A side is what lies across an edge of that border: from 0 to N - 1 the outer neighbour of a record, from N on an
    // ear.
    int aSides[N]; // of the edge from a corner to the next one
    Triangle2* aLinks[2 * N];
    int aApexes[2 * N]; // the corner inside that sees the side

    Ear aEars[N - 2]; // and the triangle that is left, whose edge 0 has side BW
    int sideBW = 0;
    int numCut = 0;
    int oneLeft = 0; // a corner on the border

    StarPlace aPlaces[N];
    std::int64_t aKeys[N];
};

} // namespace ZELK_QUOR2D
