#pragma once

#include "ui/EditorContext.h"

#include <QDialog>

#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;

namespace plinket3 {

class LumpNameEdit;

/// Changes the priority and singularity of sounds, and where patches can hold it the name of one.
class frmPropSound : public QDialog {
    Q_OBJECT
public:
    /// What all sounds get; what is absent stays as each of them has it.
    struct Values {
        std::optional<std::int32_t> priority; // never -1
        std::optional<std::int32_t> singularity;
        std::optional<std::string> name;
    };

    frmPropSound(const EditorContext& context, QWidget* parent);

    /// Lets the user choose values for these sounds (those that there are); absent when the dialog was cancelled.
    std::optional<Values> Edit(const std::vector<std::int32_t>& sounds);

private:
    void SetupData(const std::vector<const SoundRecord*>& sounds);
    void SetupName(const std::vector<std::int32_t>& sounds);
    void TakeTyped();
    void TakeName();

    EditorContext context_;
    Values edited_;
    LumpNameEdit* name_;
    QLabel* nameNote_;
    QSlider* priority_;
    QLineEdit* priorityNumber_;
    QCheckBox* singularity_;
    QLabel* reference_;
    QLabel* note_;
    QPushButton* accept_;
    QFormLayout* form_;
};

} // namespace plinket3
