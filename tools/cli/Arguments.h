#pragma once

#include "formats/Formats.h"
#include "formats/MeshOutput.h"

#include <string>
#include <vector>

namespace quor2d_tool
{

enum class Command { Mesh, Triangulate, Check, Info };
enum class Keep { Inside, Outside, All };
enum class Strategy { Constrained, Conforming };
enum class Stats { None, Text, Json };

/// What a call of the command asks for.
struct Arguments {
    Command command = Command::Info;
    std::string input;
    Format inputFormat = Format::Points;
    std::vector<OutputTarget> vOutputs;
    double minAngle = 20.0; ///< degrees
    double maxEdge = 0.0;   ///< 0 where none is given
    double minEdge = 0.0;   ///< 0 where none is given
    Strategy strategy = Strategy::Constrained;
    Keep keep = Keep::Inside;
    bool bSplit = true;
    bool bIgnoreDelaunay = false;
    bool bQuiet = false;
    Stats stats = Stats::None;
};

/// What parsing leaves to do: run the command, or end with a status.
struct ParseResult {
    bool bRun = false;
    int exitStatus = 0;
    Arguments arguments;
};

/// Parses the command line. Help, version, manual and completion go to standard output, faults to standard error.
ParseResult parseArguments(int argc, char** argv);

} // namespace quor2d_tool
