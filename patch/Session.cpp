#include "patch/Session.h"

#include "core/Files.h"
#include "core/PathList.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "patch/modTables.h"
#include "wad/clsBitmap.h"

#include <utility>

namespace plinket3 {

namespace {

constexpr std::string_view paletteLump = "PLAYPAL";

SessionResult Fail(Environment& environment, std::string_view message) {
    environment.notifier.Show(MessageKind::Exclamation, message);
    return SessionResult::Failed;
}

std::shared_ptr<clsWad> OpenWad(const std::filesystem::path& file) {
    auto wad = std::make_shared<clsWad>();
    wad->OpenWad(file);
    return wad;
}

/// Null when there is none.
std::shared_ptr<clsWad> OpenDataWad(const std::string& path, clsLog& log) {
    const std::filesystem::path file = ResolveIgnoringCase(PathOf(path));
    if (!FileExists(file)) {
        log.Add("WARNING: Unable to load data WAD, file does not exist");
        return nullptr;
    }
    log.Add("Loading data WAD...");
    auto wad = OpenWad(file);
    if (wad->WadFileName().empty()) {
        log.Add("WARNING: Unable to load data WAD, file is not a WAD file");
        return nullptr;
    }
    return wad;
}

} // namespace

SessionResult LoadSession(Environment& environment, const SessionChoice& choice, Session& session) {
    const std::vector<Settings::Iwad> iwads = environment.settings.Iwads();
    if (choice.engine >= environment.engines.size())
        return Fail(environment, "No engine configuration is selected.");
    if (choice.iwad >= iwads.size())
        return Fail(environment, "No IWAD is selected. IWADs are added in the options.");
    if (const std::string* quoted = FirstNotJoinable(choice.dataWads))
        return Fail(environment,
                    "A patch cannot name several data WADs when the path of one has a quotation mark in it: " +
                        *quoted + ". Rename it, or choose it alone.");
    if (choice.version != -1 && choice.version != environment.engines[choice.engine].version) {
        environment.notifier.Show(MessageKind::Exclamation, otherEngine);
        return SessionResult::Incompatible;
    }

    clsLog& log = environment.log;
    log.Add("Loading engine configuration...");
    EngineConfiguration engine;
    if (!modConfig::LoadEngineConfiguration(environment.engines[choice.engine].file, engine, environment.notifier))
        return SessionResult::Failed;
    log.Add("  Using '" + engine.name + "' as the current engine");
    log.Add("  Using engine version " + std::to_string(engine.version));
    if (choice.rules == Rules::Engine)
        engine.dialect = engine.dialect.AsEngines(); // never the other way: a configuration may ask for them

    log.Add("Loading table...");
    PatchData patch;
    if (!modTables::LoadEngineTable(environment, engine, patch))
        return Fail(environment, "Could not load engine table.");

    log.Add("Loading IWAD...");
    WadList wads;
    const std::shared_ptr<clsWad> iwad = OpenWad(PathOf(iwads[choice.iwad].path));
    std::vector<std::shared_ptr<clsWad>> dataWads;
    std::vector<std::string> found, missing;
    for (const std::string& path : choice.dataWads) {
        std::shared_ptr<clsWad> dataWad = OpenDataWad(path, log);
        (dataWad ? found : missing).push_back(path);
        if (dataWad)
            dataWads.push_back(std::move(dataWad));
    }

    log.Add("Registering WAD files...");
    if (!wads.RegisterWad(iwad))
        return Fail(environment, "Unable to register IWAD.");
    for (const std::shared_ptr<clsWad>& dataWad : dataWads)
        if (!wads.RegisterWad(dataWad)) {
            if (dataWads.size() == 1)
                return Fail(environment, "Unable to register data WAD."); // it is the IWAD
            const std::string path = PathText(dataWad->WadFileName());
            const bool isIwad = EqualIgnoringCase(path, PathText(iwad->WadFileName()));
            return Fail(environment, "Unable to register data WAD.\n" + path +
                                         (isIwad ? " is the IWAD." : " is among the data WADs twice."));
        }
    const auto palette = wads.FindLump(paletteLump);
    if (!palette)
        return Fail(environment, "Could not load PLAYPAL lump.");

    patch.iwadPath = iwads[choice.iwad].path;
    // Kept: a data WAD that is not there is not named in the saved patch. docs/kept-behaviour.md
    patch.dataWadPaths = engine.dialect.EngineRules() ? choice.dataWads : found;
    std::string colours = palette->wad->ReadLumpString(palette->num, clsBitmap::paletteSize);
    log.Add("  Loaded PLAYPAL lump");
    std::vector<FixedUse> fixedUses = LoadFixedUses(environment.programFolder, engine);
    session = {std::move(engine),   std::move(fixedUses), std::move(patch),  std::move(wads), iwad,
               std::move(dataWads), std::move(colours),   std::move(missing)};
    environment.settings.Number("lastConfig", static_cast<std::int32_t>(choice.engine));
    environment.settings.Number("lastIWAD", static_cast<std::int32_t>(choice.iwad));
    return SessionResult::Loaded;
}

} // namespace plinket3
