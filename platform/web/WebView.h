#pragma once
// The browser control: shows pages, keeps a history. Two of them: Qt WebEngine, in a module library that is
// loaded when the first browser window opens (linked in, it would double the time of the program's start),
// and, where that library or Qt WebEngine isn't installed, Qt's text browser, which shows the help book
// alone.

#include <QUrl>
#include <functional>
#include <memory>

class QWidget;

namespace vardelin {

// No QObject: the module library and the program share no class information this way.
class WebView
{
public:
    virtual ~WebView() = default;
    WebView() = default;
    WebView(const WebView &) = delete;
    WebView &operator=(const WebView &) = delete;

    virtual QWidget *widget() = 0; // the view owns it, unless a parent destroys it first

    virtual void Navigate(const QUrl &address) = 0;
    virtual void GoBack() = 0; // nothing without a history; so does GoForward
    virtual void GoForward() = 0;
    virtual void GoHome() = 0;   // the book's first page
    virtual void GoSearch() = 0; // the book's search page
    virtual void Refresh() = 0;
    virtual void Stop() = 0;
    virtual bool Busy() const = 0;
    virtual QString LocationName() const = 0; // the page's title
    virtual QString LocationURL() const = 0;

    std::function<void()> DownloadComplete, NavigateComplete;
};

// The book's folder, and its pages that the commands lead to.
struct HelpBook
{
    QString folder; // absolute
    QUrl home() const { return page(QStringLiteral("index.html")); }
    QUrl search() const { return page(QStringLiteral("search.html")); }
    QUrl page(const QString &name) const { return QUrl::fromLocalFile(folder + u'/' + name); }
    // Whether an address is a file of the book, whatever dots and links it is written with. No other file of
    // the machine is shown.
    bool holds(const QUrl &address) const;
};

// The text browser.
std::unique_ptr<WebView> makeTextView(const HelpBook &book);

// The web view of the module library in `folder` or, where it can't be loaded, the text browser. Call in the
// thread of the windows.
std::unique_ptr<WebView> makeWebView(const HelpBook &book, const QString &folder);

// What the late loading needs; call before the QApplication is made.
void prepareWebView();

} // namespace vardelin
