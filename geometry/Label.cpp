#include "Label.h"

#include <utility>

namespace ZELK_QUOR2D
{

Label::Label(Point2 pos, std::string txt, bool bMark) : position(pos), text(std::move(txt)), bWithMark(bMark) {}

Label::~Label() = default;

} // namespace ZELK_QUOR2D
