#pragma once

#include <QPlainTextEdit>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plinket3 {

/// A box for a text of the patch in its escaped form, with a line break for the eye behind each escaped one. Such
/// breaks are never part of the text: Enter and pasted line ends become escapes.
class EscapedTextEdit : public QPlainTextEdit {
    Q_OBJECT
public:
    EscapedTextEdit(const QString& name, const QString& accessibleName);

    /// Shows a text, and from now on refuses edits that make it longer than `limit` (characters as they are stored; a
    /// text that is longer already may become shorter) or that no patch can hold.
    void ShowText(std::string_view text, std::optional<std::int32_t> limit);
    /// Puts another text in, as typing would.
    void ReplaceText(std::string_view text);

    /// The escaped form that the box holds, or that of what stands before a place in it.
    QString Escaped(int end = -1) const;
    /// The text that it stands for.
    std::string Stored() const;

signals:
    /// The text is another one.
    void Edited();
    /// An edit was undone at once; `why` is for the user.
    void Refused(const QString& why);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    QString Raw() const;
    QString WhyRefused() const;
    void Revert();
    void Check();

    std::optional<std::int32_t> limit_;
    QString accepted_; // what the box held last, its line breaks as LF
    std::size_t acceptedLength_ = 0;
    bool checking_ = true;
};

} // namespace plinket3
