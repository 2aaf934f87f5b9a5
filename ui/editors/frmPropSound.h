#pragma once

#include "ui/editors/EditorWindow.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QSlider;

namespace plinket3 {

/// Changes a sound's priority and singularity.
class frmPropSound : public QDialog {
    Q_OBJECT
public:
    frmPropSound(const EditorContext& context, QWidget* parent);

    /// Lets the user change a copy of the sound; absent when the dialog was cancelled. The priority of what it gives is
    /// never -1.
    std::optional<SoundRecord> Edit(int sound);

    void reject() override;

private:
    void SetupData();

    EditorContext context_;
    SoundRecord edited_;
    QSlider* priority_;
    QLabel* priorityNumber_;
    QCheckBox* singularity_;
    QLabel* reference_;
    QLabel* note_;
};

} // namespace plinket3
