#pragma once

#include "patch/Edits.h"

#include <QDialog>

#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace plinket3 {

class LumpNameEdit;

/// Asks for the number of a record that is to be made, and for the name of a sprite or sound; or for another name of
/// one that there is, music too. Says at once why what is typed cannot be.
class frmNewRecord : public QDialog {
    Q_OBJECT
public:
    struct Answer {
        std::int32_t number = 0;
        std::string name; // empty for a kind without names of lumps
    };

    /// Of a sprite, a sound, music, a thing or a state.
    frmNewRecord(RecordKind kind, const Edits& edits, QWidget* parent);

    /// Proposes the next free number. Nothing when the user cancels, as all of these.
    std::optional<Answer> AskNew();
    std::optional<std::string> AskName(std::int32_t record);

private:
    void Check();
    /// The number typed, as records count; the reason why it is none that a record can have.
    Status ReadNumber(std::int32_t& number) const;

    RecordKind kind_;
    const Edits& edits_;
    QLineEdit* number_;
    QLabel* numberLabel_;
    LumpNameEdit* name_ = nullptr;
    QLabel* note_;
    QPushButton* accept_;
};

} // namespace plinket3
