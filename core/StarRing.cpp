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
        at(i).place.cross = at(i).place.crossWith(at(i + 1).place);
    at(last).place.cross = bClosed ? at(last).place.crossWith(at(0).place) : 0.0;
    for (int i = 0; i <= last; ++i)
        computePower(i);
}

// Whatever is not a number stays out, and is left to the caller.
void StarRing::computePower(int corner)
{
    Corner& a = at(corner);
    a.power = kNever;
    if (a.prev == kNone || a.next == kNone)
        return;
    const EarPower ear(at(a.prev).place, a.place, at(a.next).place);
    if (!(ear.area > 0.0 && ear.power < kNever))
        return;
    a.power = ear.power;
    if (numCorners >= kHeapFrom) {
        vHeap.emplace_back(ear.power, corner);
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
    w.place.cross = w.place.crossWith(b.place);
    computePower(prev);
    computePower(next);
}

} // namespace ZELK_QUOR2D
