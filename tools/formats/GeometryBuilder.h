#pragma once

#include "formats/Scene.h"

#include <cstdint>

namespace quor2d_tool
{

/// Puts geometries, given as runs of points of a scene, into the scene.
class GeometryBuilder
{
public:
    explicit GeometryBuilder(Scene& rScene) : scene(rScene) {}

    /// Adds the segments of a line of points first to last; its marker is the number of the feature.
    ///
    /// @return null, or what is wrong with the line
    const char* addLine(std::uint32_t first, std::uint32_t last, std::uint32_t feature);

    void beginPolygon(std::uint32_t feature);

    /// Adds a ring of points first to last, the last one in the place of the first.
    ///
    /// @return null, or what is wrong with the ring
    const char* addRing(std::uint32_t first, std::uint32_t last);

private:
    Scene& scene;
    bool bOuter = true;
};

} // namespace quor2d_tool
