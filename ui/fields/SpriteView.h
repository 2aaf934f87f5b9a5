#pragma once

#include "patch/Links.h"
#include "patch/Program.h"
#include "ui/fields/SpriteImage.h"

#include <QColor>
#include <QRect>
#include <QRegion>
#include <QString>
#include <QWidget>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class QSlider;
class QToolButton;

namespace plinket3 {

/// Shows one frame of a sprite out of the session's WADs, crisp: centred, and scaled by the largest whole number that
/// fits; or several, one after the other, on one stage. As in the game, while `GamePictures` are wanted: transparent,
/// above the floor line of the spot at which a thing stands, from each of eight sides (keys < and >, or the buttons),
/// in the light that the slider tells; weapons on the game's screen. Else uncovered pixels have the palette's first
/// colour.
class SpriteView : public QWidget {
    Q_OBJECT
public:
    /// `program` must outlive the view.
    SpriteView(const QString& name, const Program& program);

    /// Whether the settings want pictures as in the game; a view whose settings change is to be told by `Redraw`.
    static bool GamePictures(const Settings& settings);
    static void GamePictures(Settings& settings, bool wanted);
    void Redraw();
    /// The picture of a sprite's frame (without the lit bit) from the front, as the settings want it; what
    /// `look` tells is shown in pictures as in the game.
    static SpriteImage FromTheFront(const Session& session, const Settings& settings, std::string_view sprite,
                                    std::int32_t frame, const GameLook& look = {});

    /// Draws the lump that the sprite's frame (without the lit bit) has in the WADs and returns its name; draws no
    /// picture and returns an empty text when there is none or it is no picture.
    QString ShowSpriteFrame(std::int32_t sprite, std::int32_t frame);
    /// The same for the frame of a state, as another set has it and its sprite.
    QString ShowState(const PatchSet& set, std::int32_t state);
    /// The same, drawn as the thing or weapon is to which the state belongs; absent when it belongs to none.
    QString ShowState(std::int32_t state, std::optional<Target> owner = {});
    void Clear();

    /// Where the picture of a state of a thing lies, in its own pixels, about the spot at which a thing stands. Empty
    /// when there is none.
    QRect PlaceOfState(std::int32_t state) const;
    /// From now on pictures are drawn where they lie, at one scale at which all of `stage` has room. An empty one, and
    /// `Clear`, draw each on its own again.
    void Stage(const QRect& stage);

    /// The side that is shown, from 1, the front, to `spriteSides`.
    int Side() const { return side_; }
    /// What is drawn, in the picture's own size; null when nothing is.
    const QImage& Picture() const { return picture_.image; }
    /// Why nothing is drawn, though a sprite is to be shown; empty when there is no reason to tell.
    const QString& Missing() const { return picture_.missing; }
    QSize sizeHint() const override { return {160, 160}; }
    QSize minimumSizeHint() const override { return {64, 64}; }

signals:
    /// The user turned the picture: another lump is drawn.
    void Turned(const QString& lump);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct WeaponState {
        std::int32_t weapon, state;
    };
    QString Show(std::string_view sprite, std::int32_t frame, const GameLook& look = {},
                 std::optional<WeaponState> weapon = {});
    QString Draw();
    void Turn(int sides);
    QToolButton* NewTurnButton(const char* name, const QString& text, const QString& tip, int sides);
    QRect ShownStage() const;
    QColor TileColour(bool dark) const;
    QRegion DarkTiles() const;
    SpriteImage Made() const;

    const Program& program_;
    std::string sprite_; // empty: nothing is to be shown
    std::int32_t frame_ = 0;
    GameLook look_;
    std::optional<WeaponState> weapon_; // that is shown on the screen
    int side_ = 1;
    SpriteImage picture_;
    QRect stage_;
    QToolButton *cmdTurnLeft_, *cmdTurnRight_;
    QSlider* sldLight_;
};

} // namespace plinket3
