#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace ZELK_QUOR2D
{

class Triangle2;
class Zone2;

/// Evaluates a zone made of others. The zones form a graph without circles, since a result is younger than its inputs;
/// each of them is evaluated once, however often it is used, and without recursion, however deeply it is nested.
class ZoneEvaluation
{
public:
    explicit ZoneEvaluation(const Zone2* pResultZone);

    /// Replaces the contents of the vector.
    void deliver(std::vector<Triangle2*>& vTriangles);

private:
    using Triangles = std::vector<Triangle2*>;
    struct Node {
        std::size_t numUses = 0; // still to come; the triangles are released with the last one
        bool bEvaluated = false;
        Triangles vTriangles; // in the order of their addresses
    };

    void countUses();
    bool findInputs(const Zone2* pZone);
    void evaluate(const Zone2* pZone);
    void combine(const Zone2* pZone, Triangles& vResult);
    const Triangles& trianglesOf(const Zone2* pZone) const;
    void release(const Zone2* pZone);

    const Zone2* pRoot;
    std::unordered_map<const Zone2*, Node> mNodes;
    std::vector<const Zone2*> vPending; // a stack; below each zone stand zones that need it
};

} // namespace ZELK_QUOR2D
