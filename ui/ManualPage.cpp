#include "ui/ManualPage.h"

#include <QEvent>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextTable>

#include <utility>
#include <vector>

namespace plinket3 {

namespace {

constexpr int pageMargin = 16, cellPadding = 4, aroundTables = 8; // pixels
constexpr int fittingDelay = 100;                                 // milliseconds

/// A heading's name in links.
QString AnchorOf(const QString& heading) {
    QString anchor;
    for (const QChar character : heading.toLower())
        if (character.isLetterOrNumber() || character == QLatin1Char('-') || character == QLatin1Char('_'))
            anchor += character;
        else if (character == QLatin1Char(' '))
            anchor += QLatin1Char('-');
    return anchor;
}

/// Calls visit(fragment) for each run of text of one format; `visit` may change formats.
template <class Visit> void ForEachFragment(const QTextDocument& document, Visit visit) {
    std::vector<QTextFragment> fragments;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment)
            fragments.push_back(fragment.fragment());
    for (const QTextFragment& fragment : fragments)
        visit(fragment);
}

/// Between that of the page and that of its text, so that it is seen on light and dark desktops.
QColor LineColour(const QPalette& palette) {
    const QColor page = palette.color(QPalette::Base), text = palette.color(QPalette::Text);
    const auto mix = [](int left, int right) { return (2 * left + right) / 3; };
    return {mix(page.red(), text.red()), mix(page.green(), text.green()), mix(page.blue(), text.blue())};
}

QTextCursor CursorOver(QTextDocument& document, int position, int length) {
    QTextCursor cursor(&document);
    cursor.setPosition(position);
    cursor.setPosition(position + length, QTextCursor::KeepAnchor);
    return cursor;
}

} // namespace

ManualPage::ManualPage(QWidget* parent) : QTextBrowser(parent) {
    setObjectName(QStringLiteral("manualPage"));
    setAccessibleName(tr("Page of the manual"));
    setOpenExternalLinks(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // one that comes and goes would change the pictures' room
    fitting_.setSingleShot(true);
    fitting_.setInterval(fittingDelay);
    connect(&fitting_, &QTimer::timeout, this, &ManualPage::FitPictures);
    connect(this, &QTextBrowser::sourceChanged, this, &ManualPage::Dress);
}

QString ManualPage::Title() const { return document()->begin().text(); }

void ManualPage::Dress(const QUrl& place) {
    document()->setDocumentMargin(pageMargin);
    DressBlocks();
    DressTables();
    document()->size(); // lays the whole page out, so that every place can be scrolled to
    if (place.hasFragment())
        scrollToAnchor(place.fragment());
    else
        verticalScrollBar()->setValue(0);
}

void ManualPage::DressBlocks() {
    const qreal line = fontMetrics().height();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        if (format.hasProperty(QTextFormat::BlockCodeFence)) {
            format.setLeftMargin(pageMargin);
            QTextCursor(block).setBlockFormat(format);
        }
        if (format.headingLevel() == 0)
            continue;
        QTextCharFormat place;
        place.setAnchor(true);
        place.setAnchorNames({AnchorOf(block.text())});
        QTextCursor cursor = CursorOver(*document(), block.position(), block.length() - 1);
        cursor.mergeCharFormat(place);
        format.setTopMargin(block == document()->begin() ? 0 : line);
        format.setBottomMargin(line / 2);
        cursor.setBlockFormat(format);
    }
    // Code has a size of its own, with which it would not follow the zoom.
    ForEachFragment(*document(), [this](const QTextFragment& fragment) {
        QTextCharFormat format = fragment.charFormat();
        if (!format.hasProperty(QTextFormat::FontPointSize))
            return;
        format.clearProperty(QTextFormat::FontPointSize);
        CursorOver(*document(), fragment.position(), fragment.length()).setCharFormat(format);
    });
}

void ManualPage::DressTables() {
    for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
        auto* table = qobject_cast<QTextTable*>(frame);
        if (table == nullptr)
            continue;
        QTextTableFormat format = table->format();
        format.setBorderCollapse(true);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(LineColour(palette()));
        format.setBorder(1);
        format.setCellPadding(cellPadding);
        format.setTopMargin(aroundTables);
        format.setBottomMargin(aroundTables);
        table->setFormat(format);
    }
}

/// A picture as wide as it is, or as the page.
QVariant ManualPage::loadResource(int type, const QUrl& name) {
    if (type != QTextDocument::ImageResource)
        return QTextBrowser::loadResource(type, name);
    QImage picture(document()->baseUrl().resolved(name).toLocalFile());
    const qreal room = viewport()->width() - 2 * pageMargin;
    if (picture.isNull() || room <= 0 || picture.width() <= room)
        return picture;
    const qreal dots = room * devicePixelRatioF();
    if (picture.width() > dots)
        picture = picture.scaledToWidth(static_cast<int>(dots), Qt::SmoothTransformation);
    picture.setDevicePixelRatio(picture.width() / room);
    return picture;
}

void ManualPage::FitPictures() {
    ForEachFragment(*document(), [this](const QTextFragment& fragment) {
        if (!fragment.charFormat().isImageFormat())
            return;
        const QUrl name = document()->baseUrl().resolved(QUrl(fragment.charFormat().toImageFormat().name()));
        document()->addResource(QTextDocument::ImageResource, name, loadResource(QTextDocument::ImageResource, name));
        document()->markContentsDirty(fragment.position(), fragment.length());
    });
}

void ManualPage::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    fitting_.start();
}

void ManualPage::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || source().isEmpty())
        return;
    const int place = verticalScrollBar()->value();
    reload(); // the colours of links belong to the page
    verticalScrollBar()->setValue(place);
}

} // namespace plinket3
