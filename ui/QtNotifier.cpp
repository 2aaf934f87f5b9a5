#include "ui/QtNotifier.h"

#include "core/Version.h"
#include "ui/FrontWindow.h"
#include "ui/LatinText.h"

#include <QMessageBox>

#include <iostream>
#include <string>

namespace plinket3 {

namespace {

QMessageBox::Icon IconOf(MessageKind kind) {
    switch (kind) {
    case MessageKind::Critical:
        return QMessageBox::Critical;
    case MessageKind::Exclamation:
        return QMessageBox::Warning;
    default:
        return QMessageBox::Information;
    }
}

int Run(QMessageBox::Icon icon, std::string_view text, QMessageBox::StandardButtons buttons,
        QMessageBox::StandardButton first = QMessageBox::NoButton) {
    QMessageBox box(icon, QString::fromLatin1(programTitle), {}, buttons, FrontWindow());
    box.setTextFormat(Qt::PlainText); // names and paths are not markup
    box.setText(ShownPath(std::string(text)));
    std::cerr << text << std::endl; // for whoever started the program from a terminal
    box.setDefaultButton(first);
    return box.exec();
}

} // namespace

void QtNotifier::Show(MessageKind kind, std::string_view text) { Run(IconOf(kind), text, QMessageBox::Ok); }

Answer QtNotifier::Ask(std::string_view question, Buttons buttons) {
    int answer = QMessageBox::Cancel;
    switch (buttons) {
    case Buttons::YesNo:
        answer = Run(QMessageBox::Question, question, QMessageBox::Yes | QMessageBox::No);
        break;
    case Buttons::NoYes:
        answer = Run(QMessageBox::Question, question, QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        break;
    case Buttons::YesNoCancel:
        answer = Run(QMessageBox::Question, question, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    case Buttons::OkCancel:
        answer = Run(QMessageBox::Warning, question, QMessageBox::Ok | QMessageBox::Cancel);
        break;
    }
    switch (answer) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Ok:
        return Answer::Ok;
    default: // also a box that was closed
        return buttons == Buttons::YesNo || buttons == Buttons::NoYes ? Answer::No : Answer::Cancel;
    }
}

} // namespace plinket3
