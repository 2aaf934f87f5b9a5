#include "tests/wad/WadBytes.h"

#include "core/Bytes.h"

namespace plinket3::test {

std::string WadHeader(std::string_view identification, std::int32_t lumpCount, std::int32_t directoryOffset) {
    ByteWriter writer;
    writer.Text(identification);
    writer.Int32(lumpCount);
    writer.Int32(directoryOffset);
    return writer.Take();
}

std::string WadEntry(std::int32_t offset, std::int32_t size, std::string name) {
    name.resize(8, '\0');
    ByteWriter writer;
    writer.Int32(offset);
    writer.Int32(size);
    writer.Text(name);
    return writer.Take();
}

std::string WadBytes(const std::vector<Lump>& lumps, std::string_view identification) {
    std::string directory, data;
    for (const Lump& lump : lumps) {
        directory += WadEntry(static_cast<std::int32_t>(12 + 16 * lumps.size() + data.size()),
                              static_cast<std::int32_t>(lump.bytes.size()), lump.name);
        data += lump.bytes;
    }
    return WadHeader(identification, static_cast<std::int32_t>(lumps.size()), 12) + directory + data;
}

std::vector<Lump> LumpsOf(std::string_view wad) {
    ByteReader header(wad, 4);
    std::vector<Lump> lumps(static_cast<std::size_t>(header.Int32()));
    ByteReader directory(wad, static_cast<std::size_t>(header.Int32()));
    for (Lump& lump : lumps) {
        const std::int32_t offset = directory.Int32(), size = directory.Int32();
        lump.name = directory.Text(8);
        if (size > 0)
            lump.bytes = wad.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
    }
    return lumps;
}

std::string PictureBytes(int width, int height, const std::vector<std::int32_t>& columnOffsets,
                         std::string_view posts) {
    ByteWriter writer;
    writer.UInt16(width);
    writer.UInt16(height);
    writer.Int32(0x00070007); // the picture's own offsets, which nothing may use
    for (const std::int32_t offset : columnOffsets)
        writer.Int32(offset);
    writer.Text(posts);
    return writer.Take();
}

} // namespace plinket3::test
