#pragma once

#include "patch/ChangeMany.h"
#include "ui/EditorContext.h"

#include <QDialog>

#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace plinket3 {

/// Changes the selected records together: numbers as a series or each for itself, frames that lead to each other, one
/// record replaced by another. Shows what would change.
class frmChangeMany : public QDialog {
    Q_OBJECT
public:
    /// `field`, if it is one of numbers, is the one that is proposed.
    frmChangeMany(const EditorContext& context, ManyRecords records, std::optional<int> field, QWidget* parent);

    /// Shows the dialog, and stores what the user accepts as one step.
    void Change();

private:
    enum class What { Series, Change, NextInOrder, Replace };

    QLineEdit* NewBox(const char* name);
    QHBoxLayout* WithPicker(QLineEdit& box, const char* button, const QString& accessibleName);
    void BuildForm();
    void FillWhat();
    void WhatChosen();
    void FieldChosen();
    What Chosen() const;
    /// For `What::Replace`: of what kind.
    TargetKind ReplacedKind() const;
    std::vector<NumberCell> Numbers() const;
    /// The kind of record that the chosen field refers to.
    std::optional<TargetKind> FieldTarget() const;
    QString NameOf(const Target& target) const;
    void Pick(QLineEdit& box, TargetKind kind);
    std::optional<Target> NewTarget() const;
    /// Absent, with a word why in `why`, while the user has not typed enough.
    std::optional<std::vector<Assignment>> Values(QString& why) const;
    std::string StepName() const;
    void Preview();

    EditorContext context_;
    ManyRecords records_;
    std::vector<Target> targets_; // what the records refer to
    std::vector<Assignment> values_;
    QFormLayout* form_;
    QComboBox *cmbWhat_, *cmbField_, *cmbFrom_;
    QLineEdit *txtFirst_, *txtStep_, *txtChange_, *txtTo_;
    QHBoxLayout *first_ = nullptr, *to_ = nullptr;
    QPushButton* cmdFirstBrowse_ = nullptr;
    QCheckBox* chkRing_;
    QLabel *lblTo_, *lblCount_;
    QTreeWidget* lvwPreview_;
    QPushButton* cmdAccept_;
};

} // namespace plinket3
