#pragma once

#include "patch/Edits.h"
#include "patch/modTableDef.h"

#include <QLabel>
#include <QLineEdit>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

class QMenu;

namespace plinket3 {

/// A box's text as a whole 32-bit number. A number beyond 32 bits is limited and written back with the caret at its
/// end; a fraction stays in the box and is rounded (halves to the even one) in the result; no number is 0.
std::int32_t ReadLongField(QLineEdit& box);

/// A box's text as a whole number within the limits. Text with another value than the result is replaced by it.
std::int32_t ReadRangedField(QLineEdit& box, Limits limits);

/// A state as lists and labels show it: "-" for state 0, else its sprite's name and the letter of its frame.
QString StateLabelText(const PatchSet& set, std::int32_t state);

/// A sound as labels show it: "-" for sound 0, else its name.
QString SoundLabelText(const PatchSet& set, std::int32_t sound);

/// How the number of a cell stands in its box.
enum class NumberForm {
    Long,   // whole, 32 bits
    Fixed,  // 16.16 fixed point: shown as a real number, typed in whole units
    Index,  // whole, of a state or sound: only a number beyond the cell's limits is written back
    Ranged, // whole, within the cell's limits
};

/// What the boxes for numbers share: digits on the right, the whole text selected when the focus comes, a run of typing
/// that ends when it goes, and a context menu that offers to restore the default.
class FieldBox : public QLineEdit {
    Q_OBJECT
public:
    /// `accessibleName` is what the field's label says. The box is disabled until it has something to show.
    FieldBox(const QString& name, const QString& accessibleName, Edits& edits);

protected:
    /// Adds the entry that restores what the box shows, if there is something.
    virtual void AddRestore(QMenu& menu) = 0;

    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

    Edits& edits_;
};

/// The width at which a box shows that many digits.
int WidthForDigits(const QLineEdit& box, int digits);

/// A box for one numeric cell of the patch: shows it, stores what the user types (a run of typing is one step) and
/// marks a value that is not the engine's (bold, and the default in the tooltip).
class NumberBox : public FieldBox {
    Q_OBJECT
public:
    /// `accessibleName` is what the field's label says.
    NumberBox(const QString& name, const QString& accessibleName, Edits& edits, NumberForm form);

    /// The cell that the box stands for from now on; none: the box is empty and disabled. Stores nothing.
    void ShowCell(const std::optional<Cell>& cell);
    void ShowForm(NumberForm form);
    /// Shows the cell's value, unless the user is typing and the text reads as it.
    void Update();
    const std::optional<Cell>& ShownCell() const { return cell_; }
    /// What another control has chosen: shows and stores it as typing would, as a step of its own.
    void Put(std::int32_t value);

signals:
    /// The cell's value was shown or stored anew.
    void Shown();

protected:
    void AddRestore(QMenu& menu) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    std::int32_t ReadText();
    QString TextOf(std::int32_t value) const;
    void StoreText(bool typing);
    void MarkDifference();

    NumberForm form_;
    std::optional<Cell> cell_;
};

/// Bold, and the default in the tooltip, for a value that is not the engine's; plain and `plainTip` for one that is.
void MarkDifference(QWidget& widget, bool differs, const QString& defaultText, const QString& plainTip = {});

} // namespace plinket3
