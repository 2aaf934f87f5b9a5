#pragma once

#include "patch/PastePlan.h"
#include "ui/EditorContext.h"

#include <QDialog>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;

namespace plinket3 {

class LumpNameEdit;

/// Asks what another one of a thing is to be called and to look like, or in which weapon's place another one of a
/// weapon is to go, and says at once what that takes.
class frmDuplicate : public QDialog {
    Q_OBJECT
public:
    /// Of a thing or weapon that there is.
    frmDuplicate(const EditorContext& context, const RecordId& record, QWidget* parent);

    /// Nothing when the user cancels.
    std::optional<PastePlan> Ask();
    /// What the plan puts into the patch.
    const Clip& Copied() const { return clip_; }

private:
    bool IsThing() const { return record_.first == RecordKind::Thing; }
    const PatchSet& Current() const { return context_.program.patch.current; }
    QWidget* SpriteRow();
    std::string ProposedName() const;
    /// The sprite that the thing's first state shows; absent when it has none.
    std::optional<std::int32_t> OwnSprite() const;
    void PickSprite();
    void ReadRecords();
    void Plan();
    /// What the plan makes, and whether another thing has the ID number.
    QString PlanText() const;

    EditorContext context_;
    RecordId record_;
    Clip clip_;
    Status read_;
    PastePlan plan_;
    QLineEdit* txtName_;
    QSpinBox* txtID_ = nullptr;
    LumpNameEdit* txtSprite_ = nullptr;
    QWidget* spriteRow_ = nullptr;
    QComboBox* cmbWeapon_ = nullptr;
    QCheckBox* chkStates_;
    QLabel* lblNote_;
    QPlainTextEdit* txtTold_;
    QPushButton* accept_;
};

} // namespace plinket3
