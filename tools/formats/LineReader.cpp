#include "formats/LineReader.h"

#include "formats/FileError.h"
#include "formats/NumberText.h"

#include <cstring>

namespace quor2d_tool
{

bool LineReader::next()
{
    std::size_t numSearched = 0;
    const char* pEnd = nullptr;
    bool bLast = false;
    while (!pEnd && !bLast) { // each turn reads more of the input or ends the search
        std::size_t numUnread = static_cast<std::size_t>(source.unreadEnd() - source.unreadBegin());
        if (numUnread > numSearched)
            pEnd = static_cast<const char*>(
                std::memchr(source.unreadBegin() + numSearched, '\n', numUnread - numSearched));
        numSearched = numUnread;
        if (!pEnd)
            bLast = !source.extend();
    }
    content = {};
    position = 0;
    const char* pBegin = source.unreadBegin();
    if (bLast && pBegin == source.unreadEnd())
        return false;
    if (bLast)
        pEnd = source.unreadEnd();
    content = std::string_view(pBegin, static_cast<std::size_t>(pEnd - pBegin));
    if (!content.empty() && content.back() == '\r')
        content.remove_suffix(1);
    source.take(bLast ? pEnd : pEnd + 1, 1);
    ++numLine;
    return true;
}

bool LineReader::nextFilled(char comment)
{
    while (next()) { // ends with the input
        std::size_t comment0 = content.find(comment);
        if (comment0 != std::string_view::npos)
            content = content.substr(0, comment0);
        if (hasField())
            return true;
    }
    return false;
}

bool LineReader::hasField()
{
    while (position < content.size() && isBlank(content[position]))
        ++position;
    return position < content.size();
}

std::string_view LineReader::field()
{
    if (!hasField())
        return {};
    std::size_t begin = position;
    while (position < content.size() && !isBlank(content[position]))
        ++position;
    return content.substr(begin, position - begin);
}

std::string_view LineReader::requiredField(const char* what)
{
    std::string_view text = field();
    if (text.empty())
        fail(std::string(what) + " is missing");
    return text;
}

double LineReader::number(const char* what)
{
    double value = 0.0;
    std::string_view text = requiredField(what);
    if (const char* pProblem = parseNumber(text, value))
        fail(std::string(what) + " " + inQuotes(text) + " " + pProblem);
    return value;
}

std::int64_t LineReader::integer(const char* what)
{
    std::int64_t value = 0;
    std::string_view text = requiredField(what);
    if (const char* pProblem = parseInteger(text, value))
        fail(std::string(what) + " " + inQuotes(text) + " " + pProblem);
    return value;
}

std::int64_t LineReader::integer(const char* what, std::int64_t lowest, std::int64_t highest)
{
    std::int64_t value = integer(what);
    if (value < lowest || value > highest)
        fail(std::string(what) + " " + std::to_string(value) + " is outside " + std::to_string(lowest) + " to " +
             std::to_string(highest));
    return value;
}

void LineReader::expectLineEnd()
{
    if (hasField())
        fail("unexpected " + inQuotes(field()) + " at the end of the line");
}

void LineReader::fail(const std::string& reason) const
{
    throw FileError(source.name(), numLine, reason);
}

} // namespace quor2d_tool
