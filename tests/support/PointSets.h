#pragma once

#include "Point2.h"

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace ZELK_QUOR2D
{
namespace test
{

/// Uniform numbers in [0, 1) that are the same with every standard library.
class Uniform
{
public:
    explicit Uniform(std::uint64_t seed) : engine(seed) {}
    double operator()() { return static_cast<double>(engine() >> 11) * 0x1p-53; }
    double in(double low, double high) { return low + (high - low) * (*this)(); }

    /// A whole number in [0, n).
    int below(int n) { return static_cast<int>(engine() % static_cast<std::uint64_t>(n)); }

private:
    std::mt19937_64 engine;
};

inline std::vector<Point2> uniformPoints(int n, std::uint64_t seed)
{
    Uniform u(seed);
    std::vector<Point2> vPoints;
    for (int i = 0; i < n; ++i) {
        const double x = u();
        vPoints.emplace_back(x, u());
    }
    return vPoints;
}

inline std::vector<Point2> gridPoints(int columns, int rows, double spacing = 1.0)
{
    std::vector<Point2> vPoints;
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i)
            vPoints.emplace_back(i * spacing, j * spacing);
    return vPoints;
}

inline std::vector<Point2> circlePoints(int n, double radius = 1.0)
{
    std::vector<Point2> vPoints;
    for (int i = 0; i < n; ++i) {
        const double angle = 2.0 * 3.14159265358979323846 * i / n;
        vPoints.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
    }
    return vPoints;
}

/// Points of wildly different magnitudes and signs, some of them denormal.
inline std::vector<Point2> extremePoints(int n, std::uint64_t seed)
{
    Uniform u(seed);
    const auto coordinate = [&u] { return std::ldexp(u() - 0.5, static_cast<int>(u.in(-1070.0, 1023.0))); };
    std::vector<Point2> vPoints;
    for (int i = 0; i < n; ++i) {
        const double x = coordinate();
        vPoints.emplace_back(x, coordinate());
    }
    return vPoints;
}

} // namespace test
} // namespace ZELK_QUOR2D
