#include "patch/ComparedPatch.h"

#include "patch/EngineChange.h"
#include "patch/OtherLines.h"
#include "patch/SessionChoice.h"
#include "patch/modPatchFiles.h"
#include "patch/modTables.h"

#include <optional>
#include <utility>

namespace plinket3 {

namespace {

/// The place of another engine that the patch is for; absent when the open one's does.
std::optional<std::size_t> OtherEngine(const Environment& environment, const Session& open, const PatchPlace& place,
                                       std::string_view bytes) {
    const auto& engines = environment.engines;
    const auto now = ChooseEngine(engines, open.engine.fileName);
    modPatchFiles::Header header;
    static_cast<void>(modPatchFiles::ScanHeader(bytes, header)); // what stands twice does not matter
    auto engine = ChooseEngine(engines, modPatchFiles::HeaderValue(header, "engineconfig"));
    if (!engine) {
        EngineConfiguration asEngines = open.engine;
        asEngines.dialect = asEngines.dialect.AsEngines();
        if (!OtherLines(bytes, asEngines, open.patch.defaults).empty())
            engine = RecommendEngine(environment, header, bytes, place.file, now,
                                     open.engine.dialect.EngineRules() ? RulesSetting::Engine : RulesSetting::Recommend)
                         .index;
    }
    return engine == now ? std::nullopt : engine;
}

} // namespace

Status ReadForComparing(const Environment& environment, const Session& open, const PatchPlace& place,
                        ComparedPatch& patch) {
    std::string bytes;
    if (Status status = ReadPlace(place, bytes); !status)
        return status;
    if (Status status = modPatchFiles::ReadableByEngines(bytes); !status)
        return status;
    EngineConfiguration from = open.engine, to = open.engine;
    PatchData read;
    read.defaults = open.patch.defaults;
    const auto other = OtherEngine(environment, open, place, bytes);
    if (other) {
        if (!modTables::ReadEngine(environment.programFolder, environment.engines[*other], from, read.defaults))
            return Status::Failure("The engine that it is for, " + environment.engines[*other].name +
                                   ", cannot be loaded.");
        from.dialect = from.dialect.By(open.engine.dialect.rules);
        to.dialect = to.dialect.By(from.dialect.rules);
    }
    if (Status status = modPatchFiles::ReadBytes(std::move(bytes), from, read).status; !status)
        return status;
    if (!other) {
        patch = {std::move(read.current), {}, {}};
        return {};
    }
    EngineChange change = ChangeEngine(read, from, to, open.patch.defaults);
    patch = {std::move(change.patch.current), from.name, std::move(change.lost)};
    return {};
}

} // namespace plinket3
