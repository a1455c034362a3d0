#include "FileOutput.h"

#include "core/Guarded.h"
#include "output/Message.h"
#include "output/Resources.h"
#include "output/TextWriter.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace ZELK_QUOR2D
{

bool createDirectory(const char* path)
{
    if (!path)
        return false;
    return guarded([path] {
        std::error_code error;
        if (std::filesystem::is_directory(path, error) || std::filesystem::create_directory(path, error))
            return true;
        // Someone else may have created it in between.
        return std::filesystem::is_directory(path, error);
    });
}

void fileReplicate(const char* name, const char* dir)
{
    guarded([name, dir] {
        const char* text = name ? findResource(name) : nullptr;
        if (!text) {
            reportError("fileReplicate", std::string("unknown file") + (name ? name : ""));
            return;
        }
        if (!dir)
            return;
        std::ofstream file = openTextFile(std::string(dir) + "/" + name);
        file << text;
    });
}

} // namespace ZELK_QUOR2D
