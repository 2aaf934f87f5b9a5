#pragma once

#include "ui/LatinLineEdit.h"

#include <QPlainTextEdit>

#include <string>
#include <string_view>

namespace plinket3 {

/// A box for a note: plain lines, which the patch holds as comments. Refuses at once, with a word why, what has no
/// byte.
class NoteEdit : public QPlainTextEdit {
    Q_OBJECT
public:
    NoteEdit(const QString& name, const QString& accessibleName, Tell tell);

    /// Shows a note without a signal; the caret stays when it is the one that stands there.
    void ShowNote(std::string_view note);
    std::string Note() const;
    /// High enough for that many lines.
    int HeightOf(int lines) const;

signals:
    /// The user has made another note of it.
    void Edited();

private:
    void Check();

    Tell tell_;
    QString accepted_; // what stood in the box last
};

} // namespace plinket3
