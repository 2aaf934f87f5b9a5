#include "ui/frmAbout.h"

#include "core/Version.h"
#include "ui/Icons.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace plinket3 {

namespace {

constexpr int pictureSide = 72;

QString Words() {
    return QStringLiteral("<h2>%1</h2><p>%2</p>")
               .arg(QString::fromLatin1(programTitle), QString::fromLatin1(programVersionLabel)) +
           QObject::tr("<p>An editor for DeHackEd patches, the text files that change the monsters, frames, weapons, "
                       "sounds and texts of a Doom-engine game.</p>"
                       "<p>Plinket3 is free software under the GNU General Public License, version 2 or any later "
                       "version. It comes without any warranty.</p>"
                       "<p><b>It uses</b></p><ul>"
                       "<li>Qt %1 - GNU Lesser General Public License, version 3</li>"
                       "<li>SDL 2 - zlib licence</li>"
                       "<li>CLI11 - BSD licence, and JSON for Modern C++ - MIT licence (command line)</li>"
                       "<li>Bitstream Vera Sans Mono - Bitstream Vera licence</li></ul>"
                       "<p>The engines' texts are quoted from the games, which belong to their owners.</p>")
               .arg(QString::fromLatin1(qVersion()));
}

} // namespace

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(tr("About Plinket3"));
    auto* picture = new QLabel;
    picture->setPixmap(ProgramIcon("plinket3", palette()).pixmap(QSize(pictureSide, pictureSide), devicePixelRatioF()));
    picture->setAccessibleName(tr("The program's icon"));
    auto* words = new QLabel(Words());
    words->setObjectName(QStringLiteral("lblAbout"));
    words->setWordWrap(true);
    words->setTextInteractionFlags(Qt::TextBrowserInteraction);
    // A label with wrapped words tells its height only when it knows its width.
    const int width = fontMetrics().averageCharWidth() * 64;
    words->setMinimumSize(width, words->heightForWidth(width));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* top = new QHBoxLayout;
    top->addWidget(picture, 0, Qt::AlignTop);
    top->addSpacing(picture->fontMetrics().height() / 2);
    top->addWidget(words, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(buttons);
}

} // namespace plinket3
