#include "ui/DarkPalette.h"

#include <array>

namespace plinket3 {

namespace {

// The rest is the background's: about 6 to 1 in contrast, where text has 12 or more.
constexpr double shareOfText = 0.65;
// Of every other row of a list, which some palettes show like the selected one.
constexpr double shareOfTextInStripes = 0.06;
constexpr int leastDifference = 64; // in grey, from the background

QColor Between(const QColor& background, const QColor& text, double share = shareOfText) {
    const auto mix = [share](int from, int to) { return static_cast<int>(from + (to - from) * share); };
    return {mix(background.red(), text.red()), mix(background.green(), text.green()),
            mix(background.blue(), text.blue())};
}

} // namespace

QPalette LegibleRoles(const QPalette& palette) {
    struct Text {
        QPalette::ColorRole text, background;
    };
    constexpr std::array disabled{Text{QPalette::WindowText, QPalette::Window}, Text{QPalette::Text, QPalette::Base},
                                  Text{QPalette::ButtonText, QPalette::Button}};
    QPalette legible;
    if (palette.color(QPalette::Window).lightness() > palette.color(QPalette::WindowText).lightness())
        return legible;
    const auto color = [&palette](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
    for (const Text& role : disabled)
        legible.setColor(QPalette::Disabled, role.text, Between(color(role.background), color(role.text)));
    legible.setColor(QPalette::PlaceholderText, Between(color(QPalette::Base), color(QPalette::Text)));
    legible.setColor(QPalette::AlternateBase,
                     Between(color(QPalette::Base), color(QPalette::Text), shareOfTextInStripes));
    for (const QPalette::ColorRole role : {QPalette::Link, QPalette::LinkVisited})
        if (qGray(color(role).rgb()) - qGray(color(QPalette::Base).rgb()) < leastDifference)
            legible.setColor(role, Between(color(role), color(QPalette::Text)));
    return legible;
}

} // namespace plinket3
