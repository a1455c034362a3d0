#pragma once

namespace ZELK_QUOR2D
{

/// Token that experimental operations ask for, so that a caller chooses them on purpose.
class AcceptExperimentalFeature
{
};

} // namespace ZELK_QUOR2D
