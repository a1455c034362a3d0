#pragma once

#include "Quor2DExport.h"

namespace ZELK_QUOR2D
{

/// A drawing colour: red, green and blue from 0 to 1, a line width in page units, and whether shapes are filled.
class QUOR2D_API Color
{
public:
    Color(double red, double green, double blue, double lineWidth, bool bFilled)
        : r(static_cast<float>(red)), g(static_cast<float>(green)), b(static_cast<float>(blue)),
          width(static_cast<float>(lineWidth)), bFill(bFilled)
    {
    }

    bool operator==(const Color& other) const
    {
        return r == other.r && g == other.g && b == other.b && width == other.width && bFill == other.bFill;
    }
    bool operator!=(const Color& other) const { return !(*this == other); }

    float r;
    float g;
    float b;
    float width;
    bool bFill;
};

} // namespace ZELK_QUOR2D
