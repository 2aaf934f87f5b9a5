#pragma once

#include "patch/Program.h"

#include <QImage>
#include <QRect>
#include <QString>
#include <QWidget>

#include <string_view>

namespace plinket3 {

/// Shows one frame of a sprite out of the session's WADs, crisp: centred, and scaled by the largest whole number that
/// fits; or several, one after the other, on one stage. Uncovered pixels have the palette's first colour.
class SpriteView : public QWidget {
    Q_OBJECT
public:
    explicit SpriteView(const QString& name);

    /// Draws the lump that the sprite's frame (without the lit bit) has in the WADs and returns its name; clears the
    /// view and returns an empty text when there is none or it is no picture.
    QString ShowSpriteFrame(const Session& session, std::int32_t sprite, std::int32_t frame);
    /// The same for the frame of a state, as another set has it and its sprite.
    QString ShowState(const Session& session, const PatchSet& set, std::int32_t state);
    QString ShowState(const Session& session, std::int32_t state) {
        return ShowState(session, session.patch.current, state);
    }
    void Clear();

    /// Where the picture of a state lies, in its own pixels, about the spot at which a thing stands. Empty when there
    /// is none.
    static QRect PlaceOfState(const Session& session, std::int32_t state);
    /// From now on pictures are drawn where they lie, at one scale at which all of `stage` has room. An empty one, and
    /// `Clear`, draw each on its own again.
    void Stage(const QRect& stage);

    /// What is drawn, in the picture's own size; null when nothing is.
    const QImage& Picture() const { return picture_; }
    QSize sizeHint() const override { return {160, 160}; }
    QSize minimumSizeHint() const override { return {64, 64}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString Draw(const Session& session, std::string_view sprite, std::int32_t frame);

    QImage picture_;
    QPoint place_; // of its upper left corner on the stage
    QRect stage_;
};

} // namespace plinket3
