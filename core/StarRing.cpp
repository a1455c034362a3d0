#include "core/StarRing.h"

#include <algorithm>
#include <functional>

namespace ZELK_QUOR2D
{

void StarRing::finish(bool bClosed)
{
    const int last = static_cast<int>(numCorners) - 1;
    at(0).prev = bClosed ? last : kNone;
    at(last).next = bClosed ? 0 : kNone;
    for (int i = 0; i < last; ++i)
        at(i).cross = at(i).x * at(i + 1).y - at(i).y * at(i + 1).x;
    at(last).cross = bClosed ? at(last).x * at(0).y - at(last).y * at(0).x : 0.0;
    for (int i = 0; i <= last; ++i)
        computePower(i);
}

// The height, over the vertex, of the plane through the three lifted corners of the ear: squared radius minus squared
// distance to the centre. Whatever is not a number stays out, and is left to the caller.
void StarRing::computePower(int corner)
{
    Corner& a = at(corner);
    a.power = kNever;
    if (a.prev == kNone || a.next == kNone)
        return;
    const Corner& w = at(a.prev);
    const Corner& b = at(a.next);
    const double crossBW = b.x * w.y - b.y * w.x;
    const double area = a.cross + crossBW + w.cross;
    const double power = (w.height * a.cross + a.height * crossBW + b.height * w.cross) / area;
    if (!(area > 0.0 && power < kNever))
        return;
    a.power = power;
    if (numCorners >= kHeapFrom) {
        vHeap.emplace_back(power, corner);
        std::push_heap(vHeap.begin(), vHeap.end(), std::greater<HeapEntry>());
    }
}

int StarRing::takeNext()
{
    return numCorners >= kHeapFrom ? takeFromHeap() : takeSmallest();
}

int StarRing::takeSmallest()
{
    int best = kNone;
    double bestPower = kNever;
    for (int i = 0, n = static_cast<int>(numCorners); i < n; ++i) {
        const bool bLess = at(i).power < bestPower; // without a jump: nobody could predict it
        best = bLess ? i : best;
        bestPower = bLess ? at(i).power : bestPower;
    }
    if (best != kNone)
        at(best).power = kNever;
    return best;
}

int StarRing::takeFromHeap()
{
    while (!vHeap.empty()) {
        std::pop_heap(vHeap.begin(), vHeap.end(), std::greater<HeapEntry>());
        const HeapEntry entry = vHeap.back();
        vHeap.pop_back();
        Corner& corner = at(entry.second);
        if (corner.power != entry.first)
            continue; // it has left, or a neighbour has
        corner.power = kNever;
        return entry.second;
    }
    return kNone;
}

void StarRing::leave(int corner)
{
    const int prev = at(corner).prev;
    const int next = at(corner).next;
    Corner& w = at(prev);
    Corner& b = at(next);
    w.next = next;
    b.prev = prev;
    w.cross = w.x * b.y - w.y * b.x;
    computePower(prev);
    computePower(next);
}

} // namespace ZELK_QUOR2D
