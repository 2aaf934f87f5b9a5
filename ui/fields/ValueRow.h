#pragma once

#include "ui/fields/SelectedValue.h"

#include <QGridLayout>
#include <QLabel>
#include <QObject>
#include <QPushButton>

namespace plinket3 {

class BitsButton;
class ChoiceBox;
class LinkLabel;
class ValueBox;

/// One row of a form, for a value of any meaning: its caption, the kind of box that the meaning asks for (txt<stem>, or
/// cmb<stem> for one of few things), what it refers to (lbl<stem>), which leads there, a button that plays it if it is
/// a sound (cmd<stem>Play), and one that chooses (cmd<stem>Browse). A key of a string has that string's text below it.
class ValueRow : public QObject {
    Q_OBJECT
public:
    /// Adds itself below what `form` holds and is owned by `owner`. `hint` tells what the value is for.
    ValueRow(const QString& stem, const QString& label, const QString& hint, const SelectedValue& value,
             const EditorContext& context, QGridLayout& form, QObject* owner);

    /// The engine may be another one now.
    void Reload();
    /// Others are selected.
    void ShowSelection();
    /// Their values, or what these refer to, are others now.
    void Update();
    void SetVisible(bool visible);
    /// Takes the row out of its form for good, when the event that is being handled is over.
    void Remove();
    /// The caption's.
    int LabelWidth() const { return caption_->sizeHint().width(); }
    void LabelWidth(int width) { caption_->setMinimumWidth(width); }

private:
    void AddBox(const QString& stem, const QString& hint, QGridLayout& form, int row);
    void AddReference(const QString& stem, QGridLayout& form, int row);
    void AddStringKey(const QString& stem, QGridLayout& form, int row);
    QPushButton* NewSmallButton(const QString& name, const QString& text, const QString& accessibleName);
    void Show();
    void Browse();
    void BrowseStrings();
    QString Described() const;
    QString DescribedString() const;

    EditorContext context_;
    SelectedValue value_;
    ValueMeaning::Kind kind_;
    QString label_;
    QLabel* caption_;
    ValueBox* box_ = nullptr; // or
    ChoiceBox* choice_ = nullptr;
    BitsButton* bits_ = nullptr;
    LinkLabel* description_ = nullptr;
    QLabel* string_ = nullptr;
    QPushButton *play_ = nullptr, *browse_ = nullptr;
    std::vector<QWidget*> widgets_;
};

} // namespace plinket3
