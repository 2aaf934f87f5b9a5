#pragma once

#include "ui/fields/FrameForm.h"

#include <QSpinBox>

namespace plinket3 {

/// A frame index of a sprite, 0..31, as a number or letter. What is typed is limited at once.
class FrameSpinBox : public QSpinBox {
    Q_OBJECT
public:
    FrameSpinBox();
    void Form(FrameForm form) { form_ = form; }

protected:
    QString textFromValue(int value) const override { return FrameText(value, form_); }
    int valueFromText(const QString& text) const override;
    QValidator::State validate(QString& text, int& position) const override;
    void focusInEvent(QFocusEvent* event) override;

private:
    FrameForm form_ = FrameForm::Number;
};

} // namespace plinket3
