#include "desktop/helpwindow.h"

#include <QFileInfo>
#include <QKeySequence>
#include <QLineEdit>
#include <QShortcut>
#include <QStyle>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolBar>
#include <QUrl>

#include "desktop/text.h"

namespace desktop {
namespace {

constexpr int kWidthLetters = 90, kHeightLines = 36;

// Anchors and words of a page are plain; what is not a page of the folder is not opened.
class PageBrowser final : public QTextBrowser {
public:
    explicit PageBrowser(const QString& folder) : folder_(folder) { setSearchPaths({folder}); }

protected:
    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override {
        const bool local = (name.isRelative() || name.isLocalFile()) && !name.path().contains(QLatin1String(".."));
        if (local) QTextBrowser::doSetSource(name, type);
    }
    QVariant loadResource(int type, const QUrl& name) override {
        const QFileInfo file(name.isLocalFile() ? name.toLocalFile() : folder_ + QLatin1Char('/') + name.path());
        const bool inside = file.canonicalPath().startsWith(QFileInfo(folder_).canonicalFilePath());
        return inside ? QTextBrowser::loadResource(type, name) : QVariant();
    }

private:
    QString folder_;
};

}  // namespace

HelpWindow::HelpWindow(const std::string& folder, QWidget* parent)
    : QMainWindow(parent), folder_(ToQt(folder)), browser_(new PageBrowser(folder_)), find_(new QLineEdit) {
    setWindowTitle(tr("Corvane Help"));
    browser_->setAccessibleName(tr("Help page"));
    browser_->setOpenExternalLinks(false);
    setCentralWidget(browser_);
    BuildToolBar();
    new QShortcut(QKeySequence(Qt::Key_Escape), this, this, &QWidget::close);
    const QFontMetrics metrics(font());
    resize(metrics.averageCharWidth() * kWidthLetters, metrics.height() * kHeightLines);
}

void HelpWindow::BuildToolBar() {
    QToolBar* bar = addToolBar(tr("Help"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QAction* back = bar->addAction(style()->standardIcon(QStyle::SP_ArrowBack), tr("&Back"));
    QAction* forward = bar->addAction(style()->standardIcon(QStyle::SP_ArrowForward), tr("&Forward"));
    QAction* contents = bar->addAction(style()->standardIcon(QStyle::SP_FileDialogContentsView), tr("&Contents"));
    back->setShortcut(QKeySequence::Back);
    forward->setShortcut(QKeySequence::Forward);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(back, &QAction::triggered, browser_, &QTextBrowser::backward);
    connect(forward, &QAction::triggered, browser_, &QTextBrowser::forward);
    connect(contents, &QAction::triggered, this, [this] { ShowPage("helpcont.htm", {}); });
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    find_->setPlaceholderText(tr("Find on this page (Ctrl+F)"));
    find_->setAccessibleName(tr("Find on this page"));
    find_->setClearButtonEnabled(true);
    bar->addSeparator();
    bar->addWidget(find_);
    connect(find_, &QLineEdit::textEdited, this, [this] {
        browser_->moveCursor(QTextCursor::Start);
        Find(false);
    });
    connect(find_, &QLineEdit::returnPressed, this, [this] { Find(false); });
    auto* focusFind = new QShortcut(QKeySequence::Find, this);
    connect(focusFind, &QShortcut::activated, find_, [this] {
        find_->setFocus();
        find_->selectAll();
    });
}

void HelpWindow::Find(bool backward) {
    if (find_->text().isEmpty()) return;
    const QTextDocument::FindFlags flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (browser_->find(find_->text(), flags)) return;
    browser_->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    browser_->find(find_->text(), flags);
}

bool HelpWindow::ShowPage(std::string_view page, std::string_view anchor) {
    const QString file = folder_ + QLatin1Char('/') + ToQt(page);
    if (!QFileInfo(file).isFile()) return false;
    QUrl url = QUrl::fromLocalFile(file);
    if (!anchor.empty()) url.setFragment(ToQt(anchor));
    browser_->setSource(url);
    if (isMinimized()) showNormal();
    show();
    raise();
    activateWindow();
    browser_->setFocus();
    return true;
}

}  // namespace desktop
