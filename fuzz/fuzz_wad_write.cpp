#include "tests/wad/WadBytes.h"
#include "wad/WadEdit.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace plinket3;

namespace {

void Check(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace

/// A WAD that can be opened for writing takes other content for a lump that the last byte of the input chooses, or one
/// more lump, and then has this content, all other lumps as before, and nothing that keeps it from being opened.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    WadEdit wad;
    if (!wad.Open(std::string(bytes)))
        return 0;
    Check(wad.Bytes() == bytes);
    const std::size_t choice = static_cast<unsigned char>(bytes.back());
    const std::string content(choice % 32, 'x');
    std::vector<test::Lump> lumps = test::LumpsOf(bytes);
    Check(std::cmp_equal(lumps.size(), wad.LumpCount()));
    if (choice % 2 == 0 && !lumps.empty()) {
        const std::size_t lump = choice / 2 % lumps.size();
        const std::string old = std::exchange(lumps[lump].bytes, content);
        Check(static_cast<bool>(wad.Replace(static_cast<int>(lump), old)) && wad.Bytes() == bytes);
        Check(static_cast<bool>(wad.Replace(static_cast<int>(lump), content)));
    } else {
        Check(static_cast<bool>(wad.Add("DEHACKED", content)));
        lumps.push_back({"DEHACKED", content});
    }
    Check(test::LumpsOf(wad.Bytes()) == lumps);
    const std::string written = wad.Bytes();
    Check(static_cast<bool>(wad.Open(written)));
    return 0;
}
