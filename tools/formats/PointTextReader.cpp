#include "formats/PointTextReader.h"

#include "formats/FileError.h"
#include "formats/LineReader.h"
#include "formats/NumberText.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace quor2d_tool
{
namespace
{

constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

class PointTextReader
{
public:
    explicit PointTextReader(const std::string& path) : lines(path) {}

    Scene read()
    {
        bool bFirst = true;
        while (nextContent()) { // ends with the input
            if (bFirst) {
                chooseSeparator();
                splitFields();
                bFirst = false;
                if (isHeader()) {
                    chooseNamedColumns();
                    continue;
                }
            } else {
                splitFields();
            }
            readPoint();
        }
        if (scene.points.size() == 0)
            throw FileError(lines.name(), "holds no points");
        return std::move(scene);
    }

private:
    // Moves to the next line with content and leaves it without comment in `content`.
    bool nextContent()
    {
        while (lines.next()) { // ends with the input
            content = trimmed(lines.text().substr(0, commentBegin(lines.text())));
            if (!content.empty())
                return true;
        }
        return false;
    }

    // A comment character inside quotes is text.
    static std::size_t commentBegin(std::string_view text)
    {
        bool bQuoted = false;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '"')
                bQuoted = !bQuoted;
            if (!bQuoted && (text[i] == '#' || text[i] == '%'))
                return i;
        }
        return text.size();
    }

    void chooseSeparator()
    {
        separator = ' ';
        for (char c : {',', ';', '\t'})
            if (content.find(c) != std::string_view::npos) {
                separator = c;
                return;
            }
    }

    void splitFields()
    {
        vFields.clear();
        std::size_t i = 0;
        while (i <= content.size()) { // every turn takes a field and what ends it
            std::size_t begin = i;
            bool bQuoted = false;
            while (i < content.size() && (bQuoted || !endsField(content[i]))) {
                if (content[i] == '"')
                    bQuoted = !bQuoted;
                ++i;
            }
            std::string_view field = trimmed(content.substr(begin, i - begin));
            if (field.size() >= 2 && field.front() == '"' && field.back() == '"')
                field = trimmed(field.substr(1, field.size() - 2));
            if (separator != ' ' || !field.empty())
                vFields.push_back(field);
            ++i;
        }
    }

    bool endsField(char c) const { return separator == ' ' ? isBlank(c) : c == separator; }

    bool isHeader() const { return std::none_of(vFields.begin(), vFields.end(), looksLikeNumber); }

    void chooseNamedColumns()
    {
        std::size_t x = findColumn({"x", "lon", "long", "longitude", "easting", "east"});
        std::size_t y = findColumn({"y", "lat", "latitude", "northing", "north"});
        if (x != kNoColumn && y != kNoColumn) {
            columnX = x;
            columnY = y;
            columnZ = findColumn({"z", "height", "elevation", "elev", "altitude", "alt", "depth"});
            bColumnsKnown = true;
        }
    }

    std::size_t findColumn(std::initializer_list<std::string_view> names) const
    {
        for (std::size_t i = 0; i < vFields.size(); ++i) {
            std::string lower(vFields[i]);
            std::transform(lower.begin(), lower.end(), lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
            if (std::find(names.begin(), names.end(), lower) != names.end())
                return i;
        }
        return kNoColumn;
    }

    void readPoint()
    {
        if (!bColumnsKnown) {
            columnZ = vFields.size() == 3 && looksLikeNumber(vFields[2]) ? 2 : kNoColumn;
            bColumnsKnown = true;
        }
        double x = coordinate(columnX, "x");
        double y = coordinate(columnY, "y");
        std::uint32_t point = scene.addPoint(x, y);
        if (columnZ != kNoColumn)
            setHeight(scene.points, point, coordinate(columnZ, "height"));
    }

    double coordinate(std::size_t column, const char* what) const
    {
        if (column >= vFields.size() || vFields[column].empty())
            lines.fail(std::string(what) + " is missing");
        double value = 0.0;
        if (const char* pProblem = parseNumber(vFields[column], value))
            lines.fail(std::string(what) + " " + inQuotes(vFields[column]) + " " + pProblem);
        return value;
    }

    LineReader lines;
    Scene scene;
    std::string_view content;
    std::vector<std::string_view> vFields;
    char separator = ' ';
    bool bColumnsKnown = false;
    std::size_t columnX = 0;
    std::size_t columnY = 1;
    std::size_t columnZ = kNoColumn;
};

} // namespace

Scene readPointText(const std::string& path)
{
    return PointTextReader(path).read();
}

} // namespace quor2d_tool
