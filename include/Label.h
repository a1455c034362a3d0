#pragma once

#include "Point2.h"
#include "Quor2DExport.h"

#include <string>

namespace ZELK_QUOR2D
{

/// A text at a position of a drawing, on request with a cross that marks the position.
class QUOR2D_API Label
{
public:
    Label(Point2 position, std::string text, bool bWithMark);
    ~Label();
    Label(const Label&) = default;
    Label& operator=(const Label&) = default;

    Point2 getPosition() const { return position; }
    const std::string& getText() const { return text; }
    bool isWithMark() const { return bWithMark; }

private:
    Point2 position;
    std::string text;
    bool bWithMark;
};

} // namespace ZELK_QUOR2D
