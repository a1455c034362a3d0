#include "formats/WktReader.h"

#include "formats/ByteSource.h"
#include "formats/FileError.h"
#include "formats/GeometryBuilder.h"
#include "formats/NumberText.h"

#include <cctype>
#include <optional>

namespace quor2d_tool
{
namespace
{

class WktReader
{
public:
    explicit WktReader(const std::string& path) : source(path), builder(scene) {}

    Scene read()
    {
        while (skipToGeometry()) { // every turn reads a geometry
            ++feature;
            scene.vFeatureNames.emplace_back();
            readTaggedGeometry(readWord(), 0);
            if (peekToken() == ';')
                source.get();
        }
        if (scene.points.size() == 0)
            throw FileError(source.name(), "holds no geometry");
        return std::move(scene);
    }

private:
    static constexpr int kMaxDepth = 100; // of collections within collections

    bool skipToGeometry()
    {
        while (peekToken() == '#')
            while (source.peek() != '\n' && source.peek() != ByteSource::kEnd)
                source.get();
        return peekToken() != ByteSource::kEnd;
    }

    int peekToken()
    {
        while (source.peek() == '\n' || (source.peek() != ByteSource::kEnd && isBlankByte(source.peek())))
            source.get();
        return source.peek();
    }

    static bool isBlankByte(int c) { return c == ' ' || c == '\t' || c == '\r'; }

    void expect(char wanted)
    {
        int c = peekToken();
        if (c != static_cast<unsigned char>(wanted))
            source.fail(std::string("expected '") + wanted + "', found " + shown(c));
        source.get();
    }

    static std::string shown(int c)
    {
        return c == ByteSource::kEnd ? "the end of the file" : inQuotes(std::string(1, static_cast<char>(c)));
    }

    // A word in upper case.
    std::string readWord()
    {
        std::string word;
        for (int c = peekToken(); c != ByteSource::kEnd && std::isalpha(c); c = source.peek())
            word += static_cast<char>(std::toupper(source.get()));
        if (word.empty())
            source.fail("expected the name of a geometry, found " + shown(source.peek()));
        return word;
    }

    void readTaggedGeometry(std::string word, int depth)
    {
        if (word == "SRID") {
            while (source.peek() != ';' && source.peek() != '\n' && source.peek() != ByteSource::kEnd)
                source.get();
            expect(';');
            word = readWord();
        }
        std::string type = word;
        std::string dimension = splitDimension(type);
        int next = peekToken();
        std::string tag = next != '(' && next != ByteSource::kEnd ? readWord() : "";
        if (dimension.empty() && (tag == "Z" || tag == "M" || tag == "ZM")) {
            dimension = tag;
            tag = peekToken() != '(' ? readWord() : "";
        }
        bHeight = dimension.empty() || dimension[0] == 'Z';
        if (tag == "EMPTY")
            return;
        if (!tag.empty())
            source.fail("expected '(' or EMPTY, found " + inQuotes(tag));
        readBody(type, depth);
    }

    // "POINTZ" is another way to write "POINT Z".
    static std::string splitDimension(std::string& type)
    {
        for (std::string suffix : {"ZM", "Z", "M"})
            if (type.size() > suffix.size() && type.compare(type.size() - suffix.size(), suffix.size(), suffix) == 0) {
                type.resize(type.size() - suffix.size());
                return suffix;
            }
        return {};
    }

    void readBody(const std::string& type, int depth)
    {
        if (type == "POINT")
            readPoints(1);
        else if (type == "MULTIPOINT")
            readPoints(0);
        else if (type == "LINESTRING")
            readLine();
        else if (type == "POLYGON")
            readPolygon();
        else if (type == "MULTILINESTRING")
            readList([this] { readLine(); });
        else if (type == "MULTIPOLYGON")
            readList([this] { readPolygon(); });
        else if (type == "GEOMETRYCOLLECTION" && depth < kMaxDepth)
            readList([this, depth] { readTaggedGeometry(readWord(), depth + 1); });
        else
            source.fail(type == "GEOMETRYCOLLECTION" ? "collections are nested too deep"
                                                     : "unknown geometry " + inQuotes(type));
    }

    template <class ReadItem>
    void readList(ReadItem readItem)
    {
        expect('(');
        bool bMore = true;
        while (bMore) { // every turn takes an item
            readItem();
            bMore = peekToken() == ',';
            if (bMore)
                source.get();
        }
        expect(')');
    }

    // A list of points, each perhaps in parentheses of its own; as many as numWanted, or any number for 0.
    void readPoints(std::size_t numWanted)
    {
        std::size_t numRead = 0;
        readList([this, &numRead] {
            bool bParenthesis = peekToken() == '(';
            if (bParenthesis)
                source.get();
            readPosition();
            if (bParenthesis)
                expect(')');
            ++numRead;
        });
        if (numWanted != 0 && numRead != numWanted)
            source.fail("a POINT has one position");
    }

    void readLine()
    {
        std::uint32_t first = nextPoint();
        readList([this] { readPosition(); });
        check(builder.addLine(first, nextPoint() - 1, feature));
    }

    void readPolygon()
    {
        builder.beginPolygon(feature);
        readList([this] {
            std::uint32_t first = nextPoint();
            readList([this] { readPosition(); });
            check(builder.addRing(first, nextPoint() - 1));
        });
    }

    std::uint32_t nextPoint() const { return static_cast<std::uint32_t>(scene.points.size()); }

    void check(const char* pProblem) const
    {
        if (pProblem)
            source.fail(pProblem);
    }

    void readPosition()
    {
        double aNumbers[4] = {0.0, 0.0, 0.0, 0.0};
        int count = 0;
        int c = peekToken();
        while (c != ',' && c != ')' && c != ByteSource::kEnd) { // every turn takes a number
            if (count == 4)
                source.fail("a position has four numbers at most");
            aNumbers[count++] = readNumber();
            c = peekToken();
        }
        if (count < 2)
            source.fail("a position needs two numbers");
        std::uint32_t point = scene.addPoint(aNumbers[0], aNumbers[1]);
        if (count > 2 && bHeight)
            setHeight(scene.points, point, aNumbers[2]);
    }

    double readNumber()
    {
        text.clear();
        for (int c = peekToken(); endsNumber(c) == false; c = source.peek())
            text += static_cast<char>(source.get());
        double value = 0.0;
        if (const char* pProblem = parseNumber(text, value))
            source.fail("coordinate " + inQuotes(text) + " " + pProblem);
        return value;
    }

    static bool endsNumber(int c)
    {
        return c == ByteSource::kEnd || c == ',' || c == '(' || c == ')' || c == '\n' || isBlankByte(c);
    }

    ByteSource source;
    Scene scene;
    GeometryBuilder builder;
    std::string text;
    std::uint32_t feature = 0;
    bool bHeight = true;
};

} // namespace

Scene readWkt(const std::string& path)
{
    return WktReader(path).read();
}

} // namespace quor2d_tool
