#pragma once

#include "ui/editors/EditorWindow.h"

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace plinket3 {

class EscapedTextEdit;

/// Replaces a string's text. In an ordinary patch the new text must fit the space of the engine's own.
class frmPropString : public QDialog {
    Q_OBJECT
public:
    frmPropString(const EditorContext& context, QWidget* parent);

    /// Lets the user change a string's text; absent when the dialog was cancelled or the text left as it was, which an
    /// escaped form does not always read back as.
    std::optional<std::string> Edit(int string);

private:
    void ShowNewText();
    void ShowPlaceInPreview();
    void RestoreText();

    EditorContext context_;
    EscapedTextEdit* oldString_;
    EscapedTextEdit* newString_;
    QPlainTextEdit* preview_;
    QLabel* oldLength_;
    QLabel* charsLeft_;
    QLabel* note_;
    QPushButton *restore_, *accept_;
    Cell text_;
    std::optional<std::int32_t> limit_;
};

} // namespace plinket3
