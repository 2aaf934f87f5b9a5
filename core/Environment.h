#pragma once

#include "core/Notifier.h"
#include "core/clsConfiguration.h"
#include "core/clsLog.h"
#include "core/modConfig.h"

#include <filesystem>
#include <vector>

namespace plinket3 {

/// What start-up builds before any patch is opened: folders, log, settings and the configurations found beside the
/// program. `Program` adds the patch and the WADs.
struct Environment {
    explicit Environment(Notifier& notifierToUse) : notifier(notifierToUse) {}

    Notifier& notifier;
    std::filesystem::path programFolder;   // iwaddetect.cfg, config/, tables/, uses/, resources/ and manual/; read only
    std::filesystem::path settingsFolder;  // holds plinket3.cfg and plinket3.log
    std::filesystem::path documentsFolder; // where a new patch is proposed to be saved
    clsLog log;
    clsConfiguration iwadDetect;
    Settings settings;
    std::vector<modConfig::EngineEntry> engines;
    bool settingsLost = false; // the user knows that settings cannot be stored
};

} // namespace plinket3
