#pragma once

#include <QLineEdit>
#include <QValidator>

#include <functional>

namespace plinket3 {

/// Says a word to the user, in passing.
using Tell = std::function<void(const QString&)>;

/// Why a text cannot be stored: names its first character without a byte. Empty for a text that can.
QString WhyNotStorable(const QString& text);
/// Why a text cannot be the name of a record: the same, or a character at which a patch would end the name.
QString WhyNoName(const QString& text);

/// Refuses a text for which there is a reason, and tells it.
class TextValidator : public QValidator {
    Q_OBJECT
public:
    /// `why` gives the reason against a text; empty for none.
    TextValidator(QObject* parent, QString (*why)(const QString&), Tell tell)
        : QValidator(parent), why_(why), tell_(std::move(tell)) {}
    State validate(QString& text, int& position) const override;

private:
    QString (*why_)(const QString&);
    Tell tell_;
};

/// A line of text that a patch can hold. Refuses at once, with a word why, what has no byte and what is too long.
class LatinLineEdit : public QLineEdit {
    Q_OBJECT
public:
    LatinLineEdit(const QString& name, const QString& accessibleName, const Tell& tell);
};

} // namespace plinket3
