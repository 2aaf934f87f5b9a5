#include "wad/TestMap.h"

#include "core/Bytes.h"
#include "wad/WadEdit.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace plinket3 {

namespace {

struct Point {
    std::int32_t x = 0, y = 0;
};

// The room, in map units. A line of the node tree at x = 0 parts it, since not every port takes a level without nodes.
constexpr std::int32_t west = -512, east = 2560, south = -1024, north = 1024, ceiling = 512, light = 255;
constexpr Point player{-256, 0};
constexpr std::string_view wallTexture = "STARTAN3", floorFlat = "FLOOR4_8", ceilingFlat = "CEIL3_5";

enum Vertex : std::uint8_t { southWest, northWest, northEast, southEast, northMiddle, southMiddle };
constexpr std::array<Point, 6> vertices{
    {{west, south}, {west, north}, {east, north}, {east, south}, {0, north}, {0, south}}};

/// Clockwise, so that their right sides face the room.
constexpr std::array<std::pair<Vertex, Vertex>, 4> lines{
    {{southWest, northWest}, {northWest, northEast}, {northEast, southEast}, {southEast, southWest}}};

enum Angle : std::int32_t { toEast = 0, toNorth = 0x4000, toWest = 0x8000, toSouth = 0xc000 }; // 65536 make a circle

struct Seg {
    Vertex from, to;
    Angle angle;
    std::int32_t line, offset; // how far behind the beginning of its line
};
/// Those of the west half, then those of the east.
constexpr std::size_t segsOfHalf = 3;
constexpr std::array<Seg, 2 * segsOfHalf> segs{{{southMiddle, southWest, toWest, 3, east},
                                                {southWest, northWest, toNorth, 0, 0},
                                                {northWest, northMiddle, toEast, 1, 0},
                                                {northMiddle, northEast, toEast, 1, -west},
                                                {northEast, southEast, toSouth, 2, 0},
                                                {southEast, southMiddle, toWest, 3, 0}}};

std::string Numbers(std::initializer_list<std::int32_t> numbers) {
    ByteWriter writer;
    for (const std::int32_t number : numbers)
        writer.UInt16(number);
    return writer.Take();
}

std::string LumpName(std::string_view name) {
    std::string field(name);
    field.resize(8, '\0');
    return field;
}

std::string Thing(Point place, std::int32_t degrees, std::int32_t id) {
    constexpr std::int32_t inAllSkills = 7;
    return Numbers({place.x, place.y, degrees, id, inAllSkills});
}

std::string Linedefs() {
    constexpr std::int32_t impassable = 1, noSide = -1;
    std::string bytes;
    for (std::int32_t line = 0; const auto& [from, to] : lines)
        bytes += Numbers({from, to, impassable, 0, 0, line++, noSide});
    return bytes;
}

std::string Sidedefs() {
    std::string bytes;
    for (std::size_t line = 0; line < lines.size(); ++line)
        bytes += Numbers({0, 0}) + LumpName("-") + LumpName("-") + LumpName(wallTexture) + Numbers({0});
    return bytes;
}

std::string Vertices() {
    std::string bytes;
    for (const Point& vertex : vertices)
        bytes += Numbers({vertex.x, vertex.y});
    return bytes;
}

std::string Segs() {
    std::string bytes;
    for (const Seg& seg : segs)
        bytes += Numbers({seg.from, seg.to, seg.angle, seg.line, 0, seg.offset});
    return bytes;
}

/// One node whose line goes north: on its right is the east half.
std::string Nodes() {
    constexpr std::int32_t subsector = 0x8000;
    return Numbers(
        {0, south, 0, north - south, north, south, 0, east, north, south, west, 0, subsector | 1, subsector | 0});
}

/// By blocks of 128 units, row by row from the south-west, the numbers of the lines that touch them.
std::string Blockmap() {
    constexpr std::int32_t block = 128, margin = 8, listStart = 0, listEnd = -1;
    constexpr std::int32_t columns = (east - west + 2 * margin) / block + 1,
                           rows = (north - south + 2 * margin) / block + 1;
    constexpr std::int32_t headerWords = 4;
    ByteWriter writer, lists;
    for (const std::int32_t number : {west - margin, south - margin, columns, rows})
        writer.UInt16(number);
    std::int32_t place = headerWords + columns * rows; // of the next list, counted in numbers
    for (std::int32_t row = 0; row < rows; ++row)
        for (std::int32_t column = 0; column < columns; ++column) {
            writer.UInt16(place);
            const std::int32_t x = west - margin + column * block, y = south - margin + row * block;
            lists.UInt16(listStart);
            ++place;
            for (std::int32_t line = 0; const auto& [from, to] : lines) {
                const Point a = vertices[from], b = vertices[to];
                if (std::min(a.x, b.x) < x + block && std::max(a.x, b.x) >= x && std::min(a.y, b.y) < y + block &&
                    std::max(a.y, b.y) >= y) {
                    lists.UInt16(line);
                    ++place;
                }
                ++line;
            }
            lists.UInt16(listEnd);
            ++place;
        }
    return writer.Take() + lists.Take();
}

} // namespace

std::string TestMapWad(const TestMap& map) {
    constexpr std::int32_t playerStart = 1;
    std::string things = Thing(player, 0, playerStart);
    if (map.thing != 0)
        things += Thing({player.x + std::clamp(map.away, 0, TestMap::farthest), player.y}, 180, map.thing);
    const std::pair<std::string_view, std::string> lumps[]{
        {map.level, {}},
        {"THINGS", things},
        {"LINEDEFS", Linedefs()},
        {"SIDEDEFS", Sidedefs()},
        {"VERTEXES", Vertices()},
        {"SEGS", Segs()},
        {"SSECTORS", Numbers({segsOfHalf, 0, segsOfHalf, segsOfHalf})},
        {"NODES", Nodes()},
        {"SECTORS", Numbers({0, ceiling}) + LumpName(floorFlat) + LumpName(ceilingFlat) + Numbers({light, 0, 0})},
        {"REJECT", std::string(1, '\0')}, // the one sector sees itself
        {"BLOCKMAP", Blockmap()},
    };
    constexpr std::int32_t headerSize = 12;
    ByteWriter header;
    header.Text("PWAD");
    header.Int32(0);
    header.Int32(headerSize);
    WadEdit wad;
    static_cast<void>(wad.Open(header.Take())); // what is given to it is right
    for (const auto& [name, bytes] : lumps)
        static_cast<void>(wad.Add(name, bytes));
    return wad.Bytes();
}

} // namespace plinket3
