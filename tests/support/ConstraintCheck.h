#pragma once

#include "Quor_2D.h"
#include "tests/support/MeshCheck.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ZELK_QUOR2D
{
namespace test
{

/// What is promised of constraints that have been applied.
struct ConstraintCheckOptions {
    /// How many alive pieces may be missing in the mesh: those that were given up with a warning.
    std::size_t maxMissing = 0;

    /// How far a split point may lie beside the segment that was requested.
    double maxDeviation = 0.0;

    /// Refinement keeps conforming pieces like constrained ones, so that they need not be Delaunay edges after it.
    bool bRefined = false;
};

/// A brute-force check of all constraints of a triangulation, whose arithmetic is its own.
///
/// Looks for: an alive piece that is no edge; a segment whose pieces do not form a chain from its source to its target,
/// in order along it; a split point that lies too far beside it; an edge for which isConstraint() of the triangulation
/// or of a graph answers wrongly; an edge that is neither Delaunay nor a piece with CIS_CONSTRAINED_DELAUNAY; all that
/// findMeshDefect() looks for.
///
/// @param vGraphs  all graphs of the triangulation
/// @return a description of the first defect; empty if there is none
std::string findConstraintDefect(const Quor_2D& dt, const std::vector<ConstraintGraph2*>& vGraphs,
                                 const ConstraintCheckOptions& options = ConstraintCheckOptions());

/// Adds a failure to the running test when there is a defect.
void expectConstraintsHold(const Quor_2D& dt, const std::vector<ConstraintGraph2*>& vGraphs,
                           const ConstraintCheckOptions& options = ConstraintCheckOptions());

/// The alive pieces of all graphs, each once.
std::vector<ConstraintSegment2*> alivePieces(const std::vector<ConstraintGraph2*>& vGraphs);

/// The alive pieces of one segment.
std::vector<ConstraintSegment2*> leavesOf(ConstraintSegment2* pCSeg);

/// Standard output while it exists; text() is what was written so far.
class CapturedOutput
{
public:
    CapturedOutput() { ::testing::internal::CaptureStdout(); }
    ~CapturedOutput() { stop(); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    const std::string& stop()
    {
        if (bRunning)
            captured = ::testing::internal::GetCapturedStdout();
        bRunning = false;
        return captured;
    }

private:
    bool bRunning = true;
    std::string captured;
};

std::size_t countOf(const std::string& text, const std::string& pattern);

} // namespace test
} // namespace ZELK_QUOR2D
