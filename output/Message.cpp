#include "output/Message.h"

#include <iostream>

namespace ZELK_QUOR2D
{

namespace
{

const char* const kIndent = "      ";
const char* const kTag = "      [Quor2D-Message] ";
const char* const kSeparator = "***********************************************************************";

void writeReport(const std::string& line)
{
    std::cout << std::endl << line << std::endl << std::endl;
}

} // namespace

void reportError(std::string where, std::string message)
{
    writeReport(kTag + where + ", ERROR: " + message);
}

void reportWarning(std::string where, std::string message)
{
    writeReport(kTag + where + ", WARNING: " + message);
}

void reportInfo(std::string where, std::string message)
{
    writeReport(where.empty() ? kTag + ("INFO: " + message) : kIndent + where + ", INFO: " + message);
}

void printTitle(std::string title)
{
    std::cout << std::endl << std::endl;
    std::cout << kSeparator << std::endl << kSeparator << std::endl;
    std::cout << std::string(15, ' ') + title << std::endl;
    std::cout << kSeparator << std::endl << kSeparator << std::endl;
    std::cout << std::endl << std::endl;
}

} // namespace ZELK_QUOR2D
