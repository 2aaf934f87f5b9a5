#include "ui/run/frmRun.h"

#include "core/PortCommand.h"
#include "ui/AcceptButtons.h"
#include "ui/LatinText.h"
#include "ui/run/Ports.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace plinket3 {

frmRun::frmRun(Offer offer, const RunChoice& start, QWidget* parent)
    : QDialog(parent), offer_(std::move(offer)), cmbPort_(new QComboBox), cmbLevel_(new QComboBox),
      cmbSkill_(new QComboBox), chkTestMap_(new QCheckBox), txtArguments_(new QLineEdit), note_(new QLabel),
      accept_(NewButton("cmdAccept", tr("&Run"))) {
    setObjectName(QStringLiteral("frmRun"));
    setWindowTitle(tr("Run with"));
    cmbPort_->setObjectName(QStringLiteral("cmbPort"));
    for (const Settings::Port& port : offer_.ports)
        cmbPort_->addItem(ShownPath(port.name));
    cmbPort_->setCurrentIndex(std::max(cmbPort_->findText(ShownPath(start.port)), 0));
    cmbLevel_->setObjectName(QStringLiteral("cmbLevel"));
    cmbLevel_->setEditable(true);
    cmbLevel_->setToolTip(tr("A level of the IWAD or a data WAD, as MAP07 or E1M3"));
    cmbLevel_->addItems(offer_.levels);
    if (!start.level.empty())
        cmbLevel_->setEditText(ShownPath(start.level));
    cmbSkill_->setObjectName(QStringLiteral("cmbSkill"));
    for (int skill = RunChoice::easiest; skill <= RunChoice::hardest; ++skill)
        cmbSkill_->addItem(skill == RunChoice::easiest   ? tr("%1 (easiest)").arg(skill)
                           : skill == RunChoice::hardest ? tr("%1 (hardest)").arg(skill)
                                                         : QString::number(skill));
    cmbSkill_->setCurrentIndex(start.skill - RunChoice::easiest);
    const bool places = !offer_.toPlace.isEmpty();
    chkTestMap_->setObjectName(QStringLiteral("chkTestMap"));
    chkTestMap_->setText(places ? tr("P&lace in test map: %1").arg(QString(offer_.toPlace).replace(u'&', u"&&"_qs))
                                : tr("P&lace in test map"));
    chkTestMap_->setToolTip(tr("Begin in a plain room, with the selected thing or weapon before you"));
    chkTestMap_->setEnabled(places);
    chkTestMap_->setChecked(start.inTestMap);
    txtArguments_->setObjectName(QStringLiteral("txtArguments"));
    txtArguments_->setText(ShownPath(start.arguments));
    txtArguments_->setToolTip(tr("Behind those of the port, such as -nomusic"));
    txtArguments_->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    note_->setObjectName(QStringLiteral("lblNote"));
    note_->setTextFormat(Qt::PlainText);

    auto* form = new QFormLayout;
    form->addRow(tr("&Port:"), cmbPort_);
    form->addRow(QString(), chkTestMap_);
    form->addRow(tr("L&evel:"), cmbLevel_);
    form->addRow(tr("&Skill:"), cmbSkill_);
    form->addRow(tr("&Arguments:"), txtArguments_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(note_);
    layout->addWidget(AcceptButtons(*this, *accept_));
    for (const auto& [control, name] : {std::pair<QWidget*, QString>{cmbPort_, tr("Port")},
                                        {cmbLevel_, tr("Level")},
                                        {cmbSkill_, tr("Skill")},
                                        {txtArguments_, tr("Arguments")}})
        control->setAccessibleName(name);

    connect(cmbPort_, &QComboBox::currentIndexChanged, this, &frmRun::Check);
    connect(txtArguments_, &QLineEdit::textChanged, this, &frmRun::Check);
    connect(chkTestMap_, &QCheckBox::toggled, this, &frmRun::Check);
    Check();
}

void frmRun::Check() {
    const Settings::Port& port = offer_.ports[static_cast<std::size_t>(cmbPort_->currentIndex())];
    cmbLevel_->setEnabled(!chkTestMap_->isEnabled() || !chkTestMap_->isChecked());
    std::vector<std::string> words;
    const Status split = SplitWords(txtArguments_->text().toStdString(), words);
    const QString fault = FaultOf(port);
    note_->setText(!fault.isEmpty() ? tr("%1: %2").arg(ShownPath(port.program), fault)
                   : !split         ? tr("Arguments: %1").arg(ShownText(split.Reason()))
                                    : QString());
    accept_->setEnabled(note_->text().isEmpty());
}

std::optional<RunChoice> frmRun::Choose() {
    cmbPort_->setFocus();
    if (exec() != Accepted)
        return std::nullopt;
    return RunChoice{offer_.ports[static_cast<std::size_t>(cmbPort_->currentIndex())].name,
                     cmbLevel_->currentText().trimmed().toUpper().toStdString(),
                     cmbSkill_->currentIndex() + RunChoice::easiest, chkTestMap_->isChecked(),
                     txtArguments_->text().toStdString()};
}

} // namespace plinket3
