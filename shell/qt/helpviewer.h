// The program's own help viewer: the installed HTML pages in a text browser with back,
// forward, home and a search line. Used for F1, and for every help page when no web
// browser can be started.
#pragma once

#include <QUrl>
#include <QWidget>

class QLineEdit;
class QTextBrowser;
class QToolButton;

namespace zelk::qt {

class HelpViewer : public QWidget {
  public:
    explicit HelpViewer(QWidget* parent = nullptr);
    // Shows a page (a local file path or file URL) and raises the window.
    void showpage(const QString& pathorurl);
    QTextBrowser* browser() { return browser_; }
    QLineEdit* searchline() { return search_; }
    // Finds the next occurrence of the search text, wrapping at the end; false when the
    // page does not hold it.
    bool findnext(bool backward = false);

  private:
    QTextBrowser* browser_;
    QLineEdit* search_;
    QToolButton* back_;
    QToolButton* forward_;
    QUrl home_;
};

} // namespace zelk::qt
