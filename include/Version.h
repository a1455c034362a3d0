#pragma once

#include "Quor2DExport.h"

#include <string>

namespace ZELK_QUOR2D
{

/// The version text of the library interface, "Debug_v1.24_Quor2D_vc12".
QUOR2D_API std::string getQuor2DVersion();

} // namespace ZELK_QUOR2D
