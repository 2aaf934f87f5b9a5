#pragma once

#include "ui/fields/NoteEdit.h"

#include <QDialog>

#include <optional>
#include <string>
#include <string_view>

namespace plinket3 {

/// Shows and changes what the comments at a patch's head say.
class frmPatchNotes : public QDialog {
    Q_OBJECT
public:
    frmPatchNotes(std::string_view notes, const Tell& tell, QWidget* parent);

    /// Shows the dialog; the notes as the user leaves them, nothing when that is given up.
    std::optional<std::string> Edit();

private:
    NoteEdit* txtNotes_;
};

} // namespace plinket3
