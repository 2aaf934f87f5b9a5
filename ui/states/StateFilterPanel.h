#pragma once

#include "patch/Program.h"
#include "ui/lists/FilterBox.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QWidget>

#include <cstdint>
#include <vector>

class QLabel;

namespace plinket3 {

enum class StateFilterMode { All, Thing, Weapon, Unused, Free };

/// Chooses which states the editor lists: all of them, those of one thing or weapon, the unused or the free ones; and
/// of these, as one types, those whose number, name or action fits.
class StateFilterPanel : public QWidget {
    Q_OBJECT
public:
    explicit StateFilterPanel(const Session& session);

    /// The list that is narrowed down, to which the keyboard leads from the text.
    void LeadTo(QAbstractItemView& list) { txtFilter_->LeadTo(list); }
    /// Lists the things and weapons of the patch, which is another one, and goes back to all states. Emits nothing.
    void Fill();
    void setFilterMode(StateFilterMode mode);
    /// Puts controls below the box for text, behind the number of free states.
    void AddBelowText(QLayout& controls);
    /// Lists every state. Emits nothing.
    void ShowAll();
    /// The mode with that thing or weapon; forgets the text.
    void ShowStatesOf(StateFilterMode mode, int record);
    /// Forgets the text, so that it hides no state.
    void ClearText();
    /// Replaces the entry behind that of the thing `entry` - 1, and returns what stood there. One beyond the list is
    /// ignored.
    QString ReplaceThing(int entry, const QString& text);
    /// The states to list, in their order. Says how many are free, if these are listed.
    std::vector<std::int32_t> States();

signals:
    void Changed();

private:
    QComboBox* List(StateFilterMode mode) const;
    void ShowMode(StateFilterMode mode);
    std::vector<std::int32_t> StatesOfMode();

    const Session& session_;
    StateFilterMode mode_ = StateFilterMode::All;
    QButtonGroup* modes_;
    QComboBox* cmbFilterThings_;
    QComboBox* cmbFilterWeapons_;
    FilterBox* txtFilter_;
    QLabel* lblFree_;
};

} // namespace plinket3
