#include "FileOutput.h"

#include <filesystem>
#include <system_error>

namespace ZELK_QUOR2D
{

bool createDirectory(const char* path)
{
    if (!path)
        return false;
    std::error_code error;
    if (std::filesystem::is_directory(path, error) || std::filesystem::create_directory(path, error))
        return true;
    // Someone else may have created it in between.
    return std::filesystem::is_directory(path, error);
}

} // namespace ZELK_QUOR2D
