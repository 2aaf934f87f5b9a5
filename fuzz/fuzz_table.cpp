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
    for (const EngineConfiguration& engine :
         {test::SmallEngine(false), test::SmallEngine(true), test::SmallMbf21Engine(), test::SmallId24Engine()}) {
        PatchSet set, again;
        if (!modTables::ParseTable(bytes, engine, set))
            continue;
        // A damaged count may stand for a million records of zeros, which would only take time from other inputs.
        constexpr std::size_t mostRecords = 1000;
        bool large = false;
        VisitKinds([&](const auto& kind) { large = large || kind.In(set).size() > mostRecords; });
        if (large)
            return 0;
        const std::string written = modTables::FormatTable(set, engine.dialect);
        if (!modTables::ParseTable(written, engine, again) || again != set ||
            modTables::FormatTable(again, engine.dialect) != written)
            std::abort();
    }
    return 0;
}
