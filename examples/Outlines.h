// Outlines of lands and lakes for the programs in this folder: reads examples/data/*.txt and turns degrees into
// kilometres.
#pragma once

#include "Quor_2D.h"

#include <cmath>
#include <fstream>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

// Closed rings of points; the inside lies to the left of each ring. Point i has the custom index i.
struct Outlines {
    std::vector<ZELK_QUOR2D::Point2> vPoints;
    std::vector<int> vRingOfPoint;
    int numRings = 0;
};

// Reads lines "longitude latitude"; empty lines separate the rings, "#" begins a comment.
inline Outlines readOutlines(const std::string& filename)
{
    Outlines outlines;
    std::ifstream file(filename);
    bool bNewRing = true;
    for (std::string line; std::getline(file, line);) {
        double longitude = 0;
        double latitude = 0;
        std::istringstream text(line);
        text.imbue(std::locale::classic());
        if (!(text >> longitude >> latitude)) {
            bNewRing = true;
            continue;
        }
        outlines.numRings += bNewRing ? 1 : 0;
        bNewRing = false;
        outlines.vPoints.emplace_back(longitude, latitude);
        outlines.vPoints.back().setCustomIndex(static_cast<int>(outlines.vPoints.size()) - 1);
        outlines.vRingOfPoint.push_back(outlines.numRings - 1);
    }
    return outlines;
}

// From degrees to kilometres around the middle of the data, so that distances and angles mean something.
inline void projectToKilometres(Outlines& outlines)
{
    const ZELK_QUOR2D::Bbox2 box(outlines.vPoints.begin(), outlines.vPoints.end());
    const double middleX = 0.5 * (box.get_minX() + box.get_maxX());
    const double middleY = 0.5 * (box.get_minY() + box.get_maxY());
    const double kilometresPerDegree = 111.2;
    const double shrink = std::cos(middleY * 3.14159265358979 / 180);
    for (ZELK_QUOR2D::Point2& p : outlines.vPoints) {
        const int index = p.getCustomIndex();
        p = ZELK_QUOR2D::Point2((p.x() - middleX) * shrink * kilometresPerDegree,
                                (p.y() - middleY) * kilometresPerDegree);
        p.setCustomIndex(index);
    }
}

// The sides of each ring.
inline std::vector<std::vector<ZELK_QUOR2D::Segment2>> segmentsOfRings(const Outlines& outlines)
{
    std::vector<std::vector<ZELK_QUOR2D::Segment2>> vRings(static_cast<std::size_t>(outlines.numRings));
    const std::size_t n = outlines.vPoints.size();
    for (std::size_t first = 0, i = 0; i < n; ++i) {
        const bool bLastOfRing = i + 1 == n || outlines.vRingOfPoint[i + 1] != outlines.vRingOfPoint[i];
        const std::size_t following = bLastOfRing ? first : i + 1;
        vRings[static_cast<std::size_t>(outlines.vRingOfPoint[i])].emplace_back(outlines.vPoints[i],
                                                                                outlines.vPoints[following]);
        if (bLastOfRing)
            first = i + 1;
    }
    return vRings;
}
