#pragma once

#include "Quor2DExport.h"

#include <string>

namespace ZELK_QUOR2D
{

/// Starts the stopwatch called `name`, or stops it when it runs. Both are told on standard output.
///
/// Stopping leaves standard output in fixed notation with precision 6. For one thread of use.
///
/// @return -1.0 on start, the elapsed seconds on stop
QUOR2D_API double timer(const std::string& name);

} // namespace ZELK_QUOR2D
