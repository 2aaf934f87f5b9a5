#include "ui/fields/ActionText.h"

#include "core/Text.h"
#include "patch/modPatchText.h"
#include "ui/LatinText.h"

namespace plinket3 {

QString ActionName(const EngineConfiguration::Action& action) { return ShownText(Trim(action.mnemonic)); }

QString ActionDescription(const EngineConfiguration::Action& action) {
    return ShownText(modPatchText::UnescapeText(action.description));
}

QString ActionSearchText(const EngineConfiguration::Action& action) {
    return ActionName(action) + QLatin1Char('\n') + ActionDescription(action);
}

} // namespace plinket3
