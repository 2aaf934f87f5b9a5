#pragma once

#include "ui/EditorContext.h"

#include <QDialog>

#include <optional>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QSlider;

namespace plinket3 {

/// Changes the priority and singularity of sounds.
class frmPropSound : public QDialog {
    Q_OBJECT
public:
    /// What all sounds get; what is absent stays as each of them has it.
    struct Values {
        std::optional<std::int32_t> priority; // never -1
        std::optional<std::int32_t> singularity;
    };

    frmPropSound(const EditorContext& context, QWidget* parent);

    /// Lets the user choose values for these sounds (those that there are); absent when the dialog was cancelled.
    std::optional<Values> Edit(const std::vector<std::int32_t>& sounds);

private:
    void SetupData(const std::vector<const SoundRecord*>& sounds);
    void TakeTyped();

    EditorContext context_;
    Values edited_;
    QSlider* priority_;
    QLineEdit* priorityNumber_;
    QCheckBox* singularity_;
    QLabel* reference_;
    QLabel* note_;
};

} // namespace plinket3
