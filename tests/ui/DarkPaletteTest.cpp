#include "ui/DarkPalette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace plinket3::test {

namespace {

/// The light that a colour gives off, as contrast is measured.
double Luminance(const QColor& color) {
    const auto part = [](double share) {
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

double Contrast(const QColor& text, const QColor& background) {
    const double a = Luminance(text) + 0.05, b = Luminance(background) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

TEST(DarkPalette, PlaceholdersLinksAndWhatIsDisabledCanBeReadAndAreNotLikeText) {
    QPalette windows(QColor(0x3c, 0x3c, 0x3c), QColor(0x1e, 0x1e, 0x1e)); // as it colours what is dark
    windows.setColor(QPalette::Link, Qt::blue);
    windows.setColor(QPalette::LinkVisited, QColor(0, 49, 147));
    windows.setColor(QPalette::AlternateBase, QColor(0, 49, 147));
    const QPalette darks[]{windows, QPalette(QColor(53, 53, 53), QColor(42, 42, 42)), QPalette(Qt::black),
                           QPalette(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32))};
    for (const QPalette& dark : darks) {
        const QPalette mended = LegibleRoles(dark).resolve(dark);
        const struct {
            QPalette::ColorGroup group;
            QPalette::ColorRole text, background;
        } cases[]{{QPalette::Disabled, QPalette::WindowText, QPalette::Window},
                  {QPalette::Disabled, QPalette::Text, QPalette::Base},
                  {QPalette::Disabled, QPalette::ButtonText, QPalette::Button},
                  {QPalette::Active, QPalette::PlaceholderText, QPalette::Base},
                  {QPalette::Active, QPalette::Link, QPalette::Base},
                  {QPalette::Active, QPalette::LinkVisited, QPalette::Base}};
        for (const auto& row : cases) {
            const QColor background = dark.color(QPalette::Active, row.background);
            const double contrast = Contrast(mended.color(row.group, row.text), background);
            EXPECT_GE(contrast, 4.5) << row.text;
            EXPECT_LE(contrast, 0.8 * Contrast(dark.color(QPalette::Active, QPalette::Text), background)) << row.text;
        }
        EXPECT_LE(Contrast(mended.color(QPalette::AlternateBase), mended.color(QPalette::Base)), 1.3)
            << "quiet stripes";
        EXPECT_EQ(mended.color(QPalette::Active, QPalette::Text), dark.color(QPalette::Active, QPalette::Text));
    }
    const QPalette light(QColor(239, 239, 239));
    EXPECT_EQ(LegibleRoles(light).resolve(light), light);
}

} // namespace

} // namespace plinket3::test
