#include "patch/modTables.h"
#include "tests/support/SmallEngine.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace plinket3;

/// A table that was read holds the same when it is written and read again, and its text is the same from then on.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const bool extended : {false, true}) {
        const EngineConfiguration engine = test::SmallEngine(extended);
        PatchSet set, again;
        if (!modTables::ParseTable(bytes, engine, set))
            continue;
        // A damaged count may stand for a million records of zeros, which would only take time from other inputs.
        constexpr std::size_t mostRecords = 1000;
        for (const std::size_t count :
             {set.things.size(), set.states.size(), set.codePointers.size(), set.sounds.size(), set.spriteNames.size(),
              set.strings.size(), set.weapons.size(), set.ammo.size(), set.cheats.size()})
            if (count > mostRecords)
                return 0;
        const std::string written = modTables::FormatTable(set, extended);
        if (!modTables::ParseTable(written, engine, again) || again != set ||
            modTables::FormatTable(again, extended) != written)
            std::abort();
    }
    return 0;
}
