#include "ui/run/PortsPage.h"

#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/run/Ports.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plinket3 {

namespace {

#ifdef Q_OS_WIN
constexpr const char* programFilter = "Programs (*.exe)|*.exe|All files (*.*)|*.*";
#else
constexpr const char* programFilter = "All files (*)|*";
#endif

constexpr const char* argumentsTip = QT_TRANSLATE_NOOP(
    "PortsPage", "%i  the IWAD\n%d  data WADs and the test map\n%p  the patch\n%m  the level: 7, or 1 "
                 "3 for E1M3\n%s  the skill, 1 to 5\n%o  a file for the port's log of the patch\nA "
                 "token without a value is left out, with the option before it. Quotation marks hold "
                 "words together.");

} // namespace

PortsPage::PortsPage(FileDialogs& dialogs)
    : dialogs_(dialogs), lvwPorts_(new QTreeWidget), txtName_(new QLineEdit), txtProgram_(new QLineEdit),
      txtArguments_(new QLineEdit), cmdRemove_(NewButton("cmdRemovePort", tr("&Remove port"))),
      cmdBrowse_(NewButton("cmdBrowse", tr("&Browse..."))), cmdUsual_(NewButton("cmdUsual", tr("&Usual ones"))) {
    setObjectName(QStringLiteral("framPorts"));
    lvwPorts_->setObjectName(QStringLiteral("lvwPorts"));
    lvwPorts_->setAccessibleName(tr("Ports"));
    lvwPorts_->setHeaderLabels({tr("Name"), tr("Fault"), tr("Program")});
    lvwPorts_->setRootIsDecorated(false);
    lvwPorts_->setTextElideMode(Qt::ElideMiddle);
    auto* cmdFind = NewButton("cmdFindPorts", tr("&Find ports"));
    cmdFind->setToolTip(tr("Look for the programs of ports in the usual folders"));
    auto* cmdAdd = NewButton("cmdAddPort", tr("&Add port..."));
    cmdUsual_->setToolTip(tr("Take the arguments that suit this program"));
    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {cmdFind, cmdAdd, cmdRemove_})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* top = new QHBoxLayout;
    top->addWidget(lvwPorts_, 1);
    top->addLayout(buttons);

    const auto row = [this](QLineEdit* edit, const char* name, const QString& spoken, QPushButton* button) {
        edit->setObjectName(QString::fromLatin1(name));
        edit->setAccessibleName(spoken);
        connect(edit, &QLineEdit::textEdited, this, &PortsPage::Edited);
        auto* line = new QHBoxLayout;
        line->addWidget(edit, 1);
        if (button != nullptr)
            line->addWidget(button);
        return line;
    };
    txtArguments_->setToolTip(tr(argumentsTip));
    auto* form = new QFormLayout;
    const auto addRow = [form](const QString& text, QLineEdit* edit, QLayout* line) {
        auto* label = new QLabel(text);
        label->setBuddy(edit);
        form->addRow(label, line);
    };
    addRow(tr("&Name:"), txtName_, row(txtName_, "txtPortName", tr("Name of the port"), nullptr));
    addRow(tr("&Program:"), txtProgram_, row(txtProgram_, "txtPortProgram", tr("Program of the port"), cmdBrowse_));
    addRow(tr("Argu&ments:"), txtArguments_,
           row(txtArguments_, "txtPortArguments", tr("Arguments of the port"), cmdUsual_));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(form);

    connect(cmdFind, &QPushButton::clicked, this, &PortsPage::Find);
    connect(cmdAdd, &QPushButton::clicked, this, &PortsPage::Add);
    connect(cmdRemove_, &QPushButton::clicked, this, &PortsPage::Remove);
    connect(cmdBrowse_, &QPushButton::clicked, this, &PortsPage::Browse);
    connect(cmdUsual_, &QPushButton::clicked, this, [this] {
        if (const Settings::Port* port = Current()) {
            txtArguments_->setText(ShownPath(PortOf(port->program).arguments));
            Edited();
        }
    });
    connect(lvwPorts_, &QTreeWidget::currentItemChanged, this, &PortsPage::SelectionChanged);
    SelectionChanged();
}

void PortsPage::Show(std::vector<Settings::Port> ports) {
    ports_ = std::move(ports);
    Fill(0);
}

void PortsPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (ports_.empty())
        Find();
}

void PortsPage::Fill(int row) {
    filling_ = true;
    lvwPorts_->clear();
    for (std::size_t port = 0; port < ports_.size(); ++port) {
        lvwPorts_->addTopLevelItem(new QTreeWidgetItem);
        FillRow(static_cast<int>(port));
    }
    lvwPorts_->resizeColumnToContents(0);
    lvwPorts_->resizeColumnToContents(1);
    filling_ = false;
    lvwPorts_->setCurrentItem(lvwPorts_->topLevelItem(std::min(row, lvwPorts_->topLevelItemCount() - 1)));
    SelectionChanged();
}

void PortsPage::FillRow(int row) {
    const Settings::Port& port = ports_[static_cast<std::size_t>(row)];
    QTreeWidgetItem& item = *lvwPorts_->topLevelItem(row);
    item.setText(0, ShownPath(port.name));
    item.setText(1, FaultOf(port));
    item.setText(2, ShownPath(port.program));
    item.setToolTip(2, ShownPath(port.program));
}

void PortsPage::Find() {
    for (Settings::Port& found : FindPorts())
        if (std::ranges::find(ports_, found.program, &Settings::Port::program) == ports_.end())
            ports_.push_back(std::move(found));
    Fill(lvwPorts_->indexOfTopLevelItem(lvwPorts_->currentItem()));
}

void PortsPage::Add() {
    const QString program = dialogs_.OpenFile(tr("Select the program of a port"), QString::fromLatin1(programFilter));
    if (program.isEmpty())
        return;
    ports_.push_back(PortOf(StoredPath(program)));
    Fill(static_cast<int>(ports_.size()) - 1);
    txtName_->setFocus();
}

void PortsPage::Remove() {
    const int row = lvwPorts_->indexOfTopLevelItem(lvwPorts_->currentItem());
    if (row < 0)
        return;
    ports_.erase(ports_.begin() + row);
    Fill(row);
}

void PortsPage::Browse() {
    const QString program = dialogs_.OpenFile(tr("Select the program of a port"), QString::fromLatin1(programFilter));
    if (program.isEmpty())
        return;
    txtProgram_->setText(program);
    Edited();
}

Settings::Port* PortsPage::Current() {
    const int row = lvwPorts_->indexOfTopLevelItem(lvwPorts_->currentItem());
    return row < 0 ? nullptr : &ports_[static_cast<std::size_t>(row)];
}

void PortsPage::SelectionChanged() {
    if (filling_)
        return;
    const Settings::Port* port = Current();
    for (QWidget* control :
         {static_cast<QWidget*>(txtName_), static_cast<QWidget*>(txtProgram_), static_cast<QWidget*>(txtArguments_),
          static_cast<QWidget*>(cmdRemove_), static_cast<QWidget*>(cmdBrowse_), static_cast<QWidget*>(cmdUsual_)})
        control->setEnabled(port != nullptr);
    const Settings::Port shown = port == nullptr ? Settings::Port() : *port;
    txtName_->setText(ShownPath(shown.name));
    txtProgram_->setText(ShownPath(shown.program));
    txtArguments_->setText(ShownPath(shown.arguments));
    for (QLineEdit* edit : {txtName_, txtProgram_, txtArguments_})
        edit->setCursorPosition(0); // of a long text the beginning is seen
}

void PortsPage::Edited() {
    Settings::Port* port = Current();
    if (port == nullptr)
        return;
    *port = {txtName_->text().toStdString(), txtProgram_->text().toStdString(), txtArguments_->text().toStdString()};
    FillRow(lvwPorts_->indexOfTopLevelItem(lvwPorts_->currentItem()));
}

} // namespace plinket3
