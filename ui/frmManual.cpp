#include "ui/frmManual.h"

#include "core/Files.h"
#include "ui/Icons.h"
#include "ui/LatinText.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QStatusBar>
#include <QToolBar>
#include <QWindow>

namespace plinket3 {

namespace {

constexpr const char* firstPage = "index.md";
constexpr const char* geometryKey = "frmManual/geometry";

} // namespace

frmManual::frmManual(Environment& environment, WindowState& state)
    : environment_(environment), state_(state), page_(new ManualPage(this)), txtFind_(new QLineEdit) {
    setObjectName(QStringLiteral("frmManual"));
    setCentralWidget(page_);
    BuildBar();
    SetIcons();
    connect(page_, &QTextBrowser::sourceChanged, this,
            [this] { setWindowTitle(tr("%1 - Plinket3 manual").arg(page_->Title())); });
    if (!restoreGeometry(state_.Bytes(QString::fromLatin1(geometryKey))))
        resize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 48);
}

QAction* frmManual::AddAction(const char* name, const QString& text, const QList<QKeySequence>& shortcuts) {
    auto* action = new QAction(text, this);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcuts(shortcuts);
    addAction(action);
    return action;
}

void frmManual::BuildBar() {
    back_ = AddAction("back", tr("Back"), {QKeySequence(Qt::ALT | Qt::Key_Left)});
    forward_ = AddAction("forward", tr("Forward"), {QKeySequence(Qt::ALT | Qt::Key_Right)});
    contents_ = AddAction("contents", tr("Contents"), {QKeySequence(Qt::ALT | Qt::Key_Home)});
    connect(back_, &QAction::triggered, page_, &QTextBrowser::backward);
    connect(forward_, &QAction::triggered, page_, &QTextBrowser::forward);
    connect(contents_, &QAction::triggered, this, [this] { Open(QString::fromLatin1(firstPage)); });
    connect(page_, &QTextBrowser::backwardAvailable, back_, &QAction::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward_, &QAction::setEnabled);
    back_->setEnabled(false);
    forward_->setEnabled(false);

    txtFind_->setObjectName(QStringLiteral("txtFind"));
    txtFind_->setAccessibleName(tr("Find in this page"));
    txtFind_->setPlaceholderText(tr("Find in this page"));
    txtFind_->setToolTip(tr("Ctrl+F; Enter or F3 finds the next place, Shift+F3 the one before"));
    txtFind_->setClearButtonEnabled(true);
    connect(txtFind_, &QLineEdit::textEdited, this, [this] { Find(false, false); });
    connect(txtFind_, &QLineEdit::returnPressed, this, [this] { Find(false, true); });
    connect(AddAction("find", tr("Find"), {QKeySequence(Qt::CTRL | Qt::Key_F)}), &QAction::triggered, this, [this] {
        txtFind_->setFocus();
        txtFind_->selectAll();
    });
    connect(AddAction("findNext", tr("Find next"), {QKeySequence(Qt::Key_F3)}), &QAction::triggered, this,
            [this] { Find(false, true); });
    connect(AddAction("findPrevious", tr("Find previous"), {QKeySequence(Qt::SHIFT | Qt::Key_F3)}), &QAction::triggered,
            this, [this] { Find(true, true); });
    connect(AddAction("zoomIn", tr("Larger"), {QKeySequence::ZoomIn, QKeySequence(Qt::CTRL | Qt::Key_Equal)}),
            &QAction::triggered, this, [this] { page_->zoomIn(); });
    connect(AddAction("zoomOut", tr("Smaller"), {QKeySequence::ZoomOut}), &QAction::triggered, this,
            [this] { page_->zoomOut(); });

    QToolBar* bar = addToolBar(tr("Manual"));
    bar->setObjectName(QStringLiteral("tlbManual"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu); // it is not to be hidden
    for (QAction* action : {back_, forward_, contents_}) {
        action->setToolTip(
            QStringLiteral("%1 (%2)").arg(action->text(), action->shortcut().toString(QKeySequence::NativeText)));
        bar->addAction(action);
    }
    bar->addSeparator();
    bar->addWidget(txtFind_);
}

void frmManual::SetIcons() {
    back_->setIcon(ProgramIcon("back", palette()));
    forward_->setIcon(ProgramIcon("forward", palette()));
    contents_->setIcon(ProgramIcon("contents", palette()));
}

void frmManual::Open(const QString& page) {
    const QString name = page.isEmpty() ? QString::fromLatin1(firstPage) : page;
    const std::filesystem::path file =
        environment_.programFolder / "manual" / StoredPath(name.section(QLatin1Char('#'), 0, 0));
    if (!FileExists(file)) {
        environment_.notifier.Show(MessageKind::Exclamation,
                                   "The manual could not be opened: " + PathText(file) + " is not there.");
        return;
    }
    QUrl url = QUrl::fromLocalFile(ShownPath(file));
    const QString place = name.section(QLatin1Char('#'), 1);
    if (!place.isEmpty())
        url.setFragment(place);
    if (!place.isEmpty() || page_->source().adjusted(QUrl::RemoveFragment) != url)
        page_->setSource(url);
    BringUp();
}

void frmManual::BringUp() {
    // A modal dialog lets no other windows be used but those that stand over it.
    winId(); // makes the window's handle
    if (const auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
        StandOver(dialog->windowHandle());
        const auto next = [this] {
            if (const QWidget* outer = QApplication::activeModalWidget())
                StandOver(outer->windowHandle());
            else
                windowHandle()->setTransientParent(nullptr); // without coming up again
        };
        connect(dialog, &QDialog::finished, this, next,
                static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    } else {
        StandOver(nullptr);
    }
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
    page_->setFocus();
}

/// Of the dialog, if there is one.
void frmManual::StandOver(QWindow* below) {
    if (windowHandle()->transientParent() == below)
        return;
    const bool shown = isVisible();
    hide();
    windowHandle()->setTransientParent(below);
    setVisible(shown);
}

/// From the selection on and around the end; `further` passes over what is selected.
void frmManual::Find(bool backward, bool further) {
    QTextCursor start = page_->textCursor();
    if (!further) {
        start.setPosition(start.selectionStart());
        page_->setTextCursor(start);
    }
    statusBar()->clearMessage();
    const QTextDocument::FindFlags flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (txtFind_->text().isEmpty() || page_->find(txtFind_->text(), flags))
        return;
    page_->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    if (page_->find(txtFind_->text(), flags))
        return;
    page_->setTextCursor(start);
    statusBar()->showMessage(tr("\"%1\" is not on this page").arg(txtFind_->text()));
}

void frmManual::closeEvent(QCloseEvent* event) {
    state_.Bytes(QString::fromLatin1(geometryKey), saveGeometry());
    QMainWindow::closeEvent(event);
}

void frmManual::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && back_ != nullptr)
        SetIcons();
}

} // namespace plinket3
