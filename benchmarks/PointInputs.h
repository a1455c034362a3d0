#pragma once

#include "benchmarks/Measure.h"

#include <cmath>

// Inputs of points, as coordinates x0, y0, x1, y1, ..., the same on every machine. uniformCoordinates() is in
// Measure.h.
namespace bench
{

/// side * side points with integer coordinates, row by row.
inline std::vector<double> gridCoordinates(int side)
{
    std::vector<double> vCoordinates;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            vCoordinates.insert(vCoordinates.end(), {static_cast<double>(x), static_cast<double>(y)});
    return vCoordinates;
}

/// Uniform centres in the unit square, with as many points around each, normally distributed.
inline std::vector<double> clusterCoordinates(std::size_t numCentres, std::size_t numPointsEach, double deviation)
{
    const std::vector<double> vCentres = uniformCoordinates(numCentres);
    std::mt19937_64 random(43);
    std::normal_distribution<double> offset(0.0, deviation);
    std::vector<double> vCoordinates;
    for (std::size_t i = 0; i < numCentres; ++i)
        for (std::size_t j = 0; j < numPointsEach; ++j) {
            vCoordinates.push_back(vCentres[2 * i] + offset(random));
            vCoordinates.push_back(vCentres[2 * i + 1] + offset(random));
        }
    return vCoordinates;
}

/// The corners of the unit square and, within a millionth of its size, n uniform points at its centre.
inline std::vector<double> denseClusterCoordinates(std::size_t n)
{
    std::vector<double> vCoordinates{0, 0, 1, 0, 1, 1, 0, 1};
    for (const double u : uniformCoordinates(n))
        vCoordinates.push_back(0.5 + 1e-6 * (u - 0.5));
    return vCoordinates;
}

/// n points at equal angles: all of them on one circle but for rounding.
inline std::vector<double> circleCoordinates(int n)
{
    std::vector<double> vCoordinates;
    for (int i = 0; i < n; ++i) {
        const double angle = 2 * 3.14159265358979323846 * i / n;
        vCoordinates.insert(vCoordinates.end(), {std::cos(angle), std::sin(angle)});
    }
    return vCoordinates;
}

/// n points on y = x * x between -1 and 1: every one of them sees very many others.
inline std::vector<double> parabolaCoordinates(int n)
{
    std::vector<double> vCoordinates;
    for (int i = 0; i < n; ++i) {
        const double x = -1.0 + 2.0 * i / (n - 1);
        vCoordinates.insert(vCoordinates.end(), {x, x * x});
    }
    return vCoordinates;
}

} // namespace bench
