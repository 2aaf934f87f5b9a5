#include "ui/LatinText.h"

namespace plinket3 {

QString ShownStart(std::string_view text) {
    return text.size() <= longestShown ? ShownText(text)
                                       : ShownText(text.substr(0, longestShown)) + QStringLiteral("...");
}

} // namespace plinket3
