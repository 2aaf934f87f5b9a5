#pragma once

#include <QTextBrowser>
#include <QTimer>

namespace plinket3 {

/// Shows a page of the manual, a Markdown file. To what the toolkit makes of Markdown it adds places to jump to (every
/// heading, named as web sites name them: "Ctrl+F: find" is "ctrlf-find"), tables with lines and room, and pictures
/// that are never wider than the page.
class ManualPage : public QTextBrowser {
    Q_OBJECT
public:
    explicit ManualPage(QWidget* parent);

    /// The first heading.
    QString Title() const;

    QVariant loadResource(int type, const QUrl& name) override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Dress(const QUrl& place);
    void DressBlocks();
    void DressTables();
    void FitPictures();

    QTimer fitting_; // waits until the user has done with resizing
};

} // namespace plinket3
