#include "ui/FreePlace.h"
#include "tests/ui/WindowTest.h"

#include <QMdiArea>
#include <QMdiSubWindow>

#include <algorithm>
#include <random>

namespace plinket3::test {
namespace {

TEST(FreePlace, IsTheLargestThatCoversNothing) {
    constexpr int side = 12;
    const QRect room(0, 0, side, side);
    std::mt19937 numbers(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same places in each run
    const auto random = [&numbers](int most) { return static_cast<int>(numbers() % static_cast<unsigned>(most)) + 1; };
    int found = 0;
    constexpr int rounds = 300;
    for (int round = 0; round < rounds; ++round) {
        QList<QRect> others;
        for (int i = random(4); i > 0; --i)
            others.append({random(side + 4) - 3, random(side + 4) - 3, random(7), random(7)}); // some hang over
        const QSize size(random(side), random(side)), least(random(size.width()), random(size.height()));
        std::optional<QRect> best; // by trying all
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                for (int height = least.height(); height <= size.height(); ++height)
                    for (int width = least.width(); width <= size.width(); ++width) {
                        const QRect place(x, y, width, height);
                        if (room.contains(place) &&
                            std::ranges::none_of(others, [&](const QRect& other) { return other.intersects(place); }) &&
                            (!best || width * height > best->width() * best->height()))
                            best = place;
                    }
        const auto place = FreePlace(room, others, size, least);
        ASSERT_EQ(place.has_value(), best.has_value()) << round;
        if (!place)
            continue;
        ++found;
        EXPECT_EQ(place->width() * place->height(), best->width() * best->height()) << round;
        EXPECT_TRUE(room.contains(*place)) << round;
        EXPECT_TRUE(place->width() >= least.width() && place->height() >= least.height()) << round;
        EXPECT_TRUE(place->width() <= size.width() && place->height() <= size.height()) << round;
        EXPECT_TRUE(std::ranges::none_of(others, [&](const QRect& other) { return other.intersects(*place); }));
    }
    EXPECT_GT(found, rounds / 3);
    EXPECT_LT(found, rounds);
}

class EditorPlacesTest : public WindowTest {
protected:
    enum Editor : std::size_t { things, states, sounds, strings, weapons };
    void SetUp() override {
        LoadEngine("doom19");
        ShowWindow();
    }
    QRect Open(std::size_t editor) {
        Editors().Show(editor, true);
        return Editors().Frame(editor)->geometry();
    }
};

TEST_F(EditorPlacesTest, OpenedEditorsCoverNoOtherWhileThereIsRoom) {
    window->resize(1824, 860); // on a screen of 1920 by 1080
    const QRect alone = Open(things);
    const QRect second = Open(states);
    const QRect beside = Editors().Frame(things)->geometry();
    EXPECT_FALSE(beside.intersects(second));
    EXPECT_TRUE(window->findChild<QMdiArea*>()->viewport()->rect().contains(second));
    EXPECT_LT(beside.width(), alone.width()) << "it gave way";
    EXPECT_EQ(beside.topLeft(), alone.topLeft());
    const QSize least = Editors().Frame(states)->minimumSizeHint();
    EXPECT_TRUE(second.width() >= least.width() && second.height() >= least.height());

    const QRect third = Open(sounds); // there is no room any more: the others stay
    EXPECT_EQ(Editors().Frame(things)->geometry(), beside);
    EXPECT_EQ(Editors().Frame(states)->geometry(), second);
    Editors().Show(sounds, false);
    EXPECT_EQ(Open(sounds), third) << "it comes back to its place";
}

TEST_F(EditorPlacesTest, WhatTheUserHasPlacedStaysThere) {
    window->resize(1824, 860);
    Open(things);
    Editors().Frame(things)->resize(1300, 500);
    const QRect placed = Editors().Frame(things)->geometry();
    const QRect sound = Open(sounds);
    EXPECT_FALSE(placed.intersects(sound)) << "smaller, in what is free";
    Open(states);
    EXPECT_EQ(Editors().Frame(things)->geometry(), placed);
    EXPECT_EQ(Editors().Frame(sounds)->geometry(), sound);
    Editors().Frame(states)->showMaximized();
    Open(strings);
    EXPECT_EQ(Editors().Frame(things)->geometry(), placed);
}

} // namespace
} // namespace plinket3::test
