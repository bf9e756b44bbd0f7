#include "shell/qt/helpviewer.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace zelk::qt {

HelpViewer::HelpViewer(QWidget* parent) : QWidget(parent, Qt::Window) {
    setObjectName("helpviewer");
    setWindowTitle("ZELK Filter Design Help");
    auto* layout = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    auto tool = [this, bar](const char* name, const QString& text, const QString& tip) {
        auto* b = new QToolButton(this);
        b->setObjectName(name);
        b->setText(text);
        b->setToolTip(tip);
        b->setToolButtonStyle(Qt::ToolButtonTextOnly);
        bar->addWidget(b);
        return b;
    };
    back_ = tool("back", "\u25C0 &Back", "Previous page (Alt+Left)");
    forward_ = tool("forward", "&Forward \u25B6", "Next page (Alt+Right)");
    QToolButton* home = tool("home", "&Contents", "The help contents");
    bar->addSpacing(16);
    auto* label = new QLabel("&Search:", this);
    search_ = new QLineEdit(this);
    search_->setObjectName("search");
    search_->setPlaceholderText("text on this page");
    search_->setClearButtonEnabled(true);
    label->setBuddy(search_);
    bar->addWidget(label);
    bar->addWidget(search_, 1);
    QToolButton* next = tool("findnext", "Find &Next", "Next occurrence (F3)");
    QToolButton* previous = tool("findprevious", "Find &Previous", "Previous occurrence (Shift+F3)");
    layout->addLayout(bar);
    browser_ = new QTextBrowser(this);
    browser_->setObjectName("browser");
    // Links inside the help folder stay in the viewer; web addresses go to the platform.
    browser_->setOpenLinks(false);
    QObject::connect(browser_, &QTextBrowser::anchorClicked, this, [this](const QUrl& u) {
        if (u.isLocalFile() || u.isRelative()) browser_->setSource(u);
        else QDesktopServices::openUrl(u);
    });
    layout->addWidget(browser_, 1);
    back_->setEnabled(false);
    forward_->setEnabled(false);
    QObject::connect(back_, &QToolButton::clicked, browser_, &QTextBrowser::backward);
    QObject::connect(forward_, &QToolButton::clicked, browser_, &QTextBrowser::forward);
    QObject::connect(home, &QToolButton::clicked, this, [this] {
        if (home_.isValid()) browser_->setSource(home_);
    });
    QObject::connect(browser_, &QTextBrowser::backwardAvailable, back_, &QToolButton::setEnabled);
    QObject::connect(browser_, &QTextBrowser::forwardAvailable, forward_, &QToolButton::setEnabled);
    QObject::connect(browser_, &QTextBrowser::sourceChanged, this, [this] {
        QString t = browser_->documentTitle();
        setWindowTitle(t.isEmpty() ? QString("ZELK Filter Design Help") : t + " - ZELK Filter Design Help");
    });
    QObject::connect(search_, &QLineEdit::returnPressed, this, [this] { findnext(); });
    QObject::connect(search_, &QLineEdit::textEdited, this, [this] {
        // Searching as one types: from the top of the page.
        browser_->moveCursor(QTextCursor::Start);
        findnext();
    });
    QObject::connect(next, &QToolButton::clicked, this, [this] { findnext(); });
    QObject::connect(previous, &QToolButton::clicked, this, [this] { findnext(true); });
    new QShortcut(QKeySequence::Find, this, [this] {
        search_->setFocus();
        search_->selectAll();
    });
    new QShortcut(QKeySequence::FindNext, this, [this] { findnext(); });
    new QShortcut(QKeySequence::FindPrevious, this, [this] { findnext(true); });
    new QShortcut(QKeySequence::Back, this, [this] { browser_->backward(); });
    new QShortcut(QKeySequence::Forward, this, [this] { browser_->forward(); });
    new QShortcut(QKeySequence(Qt::Key_Escape), this, [this] { close(); });
    resize(820, 640);
}

void HelpViewer::showpage(const QString& page) {
    QUrl u = page.startsWith("file:") ? QUrl(page) : QUrl::fromLocalFile(QFileInfo(page).absoluteFilePath());
    if (!home_.isValid()) home_ = u.adjusted(QUrl::RemoveFilename).resolved(QUrl("zkhelp.html"));
    browser_->setSource(u);
    show();
    raise();
    activateWindow();
}

bool HelpViewer::findnext(bool backward) {
    QString text = search_->text();
    if (text.isEmpty()) return false;
    QTextDocument::FindFlags flags;
    if (backward) flags |= QTextDocument::FindBackward;
    if (browser_->find(text, flags)) return true;
    // Wrap round once.
    browser_->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    return browser_->find(text, flags);
}

} // namespace zelk::qt
