#pragma once

#include <QLineEdit>
#include <QValidator>

#include <functional>

namespace plinket3 {

/// Says a word to the user, in passing.
using Tell = std::function<void(const QString&)>;

/// Refuses a text with a character that has no Latin-1 byte, and tells why.
class LatinValidator : public QValidator {
    Q_OBJECT
public:
    LatinValidator(QObject* parent, Tell tell) : QValidator(parent), tell_(std::move(tell)) {}
    State validate(QString& text, int& position) const override;

private:
    Tell tell_;
};

/// Why a text cannot be stored: names its first character without a byte. Empty for a text that can.
QString WhyNotStorable(const QString& text);

/// A line of text that a patch can hold. Refuses at once, with a word why, what has no byte and what is too long.
class LatinLineEdit : public QLineEdit {
    Q_OBJECT
public:
    LatinLineEdit(const QString& name, const QString& accessibleName, Tell tell);
};

} // namespace plinket3
