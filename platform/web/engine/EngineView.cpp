// The module library: Qt WebEngine as a WebView.

#include "platform/web/WebView.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QPalette>
#include <QPointer>
#include <QWebEngineHistory>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Lets a page have files of the book alone, and scripts only if it is of the book itself.
class Guard final : public QWebEngineUrlRequestInterceptor
{
public:
    Guard(const HelpBook &book, QObject *parent) : QWebEngineUrlRequestInterceptor(parent), m_book(book) {}

    void interceptRequest(QWebEngineUrlRequestInfo &info) override
    {
        const QUrl address = info.requestUrl();
        const bool file = address.isLocalFile();
        const bool script = info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeScript;
        info.block((file && !m_book.holds(address)) || (script && !file));
    }

private:
    HelpBook m_book;
};

class Page final : public QWebEnginePage
{
public:
    Page(QWebEngineProfile *profile, const HelpBook &book, QObject *parent)
        : QWebEnginePage(profile, parent), m_book(book)
    {}

protected:
    bool acceptNavigationRequest(const QUrl &address, NavigationType, bool isMainFrame) override
    {
        if (address.isLocalFile() && !m_book.holds(address))
            return false;
        if (isMainFrame)
            settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, m_book.holds(address));
        return true;
    }
    // A link that asks for a window of its own opens in this one.
    QWebEnginePage *createWindow(WebWindowType) override { return this; }
    // What a page writes for its makers is no business of a terminal.
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int,
                                  const QString &) override
    {}

private:
    HelpBook m_book;
};

void limit(QWebEngineSettings &settings)
{
    using S = QWebEngineSettings;
    for (const S::WebAttribute off :
         {S::JavascriptEnabled, S::LocalStorageEnabled, S::LocalContentCanAccessRemoteUrls, S::PluginsEnabled,
          S::PdfViewerEnabled, S::FullScreenSupportEnabled, S::WebGLEnabled, S::JavascriptCanOpenWindows,
          S::AllowWindowActivationFromJavaScript, S::ScreenCaptureEnabled})
        settings.setAttribute(off, false);
    settings.setAttribute(S::LocalContentCanAccessFileUrls,
                          true); // style and pictures of the book; the guard sees to the rest
}

// The book's pages follow the desktop's light or dark look through this mark.
QWebEngineScript lookMark()
{
    const QPalette palette = QApplication::palette();
    const bool dark =
        palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    QWebEngineScript script;
    script.setName(u"look"_s);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    // The script runs before the page has an element, and the mark shall stand before anything is painted.
    script.setSourceCode(u"new MutationObserver((changes, watch) => {"
                         "    if (!document.documentElement) return;"
                         "    watch.disconnect();"
                         "    document.documentElement.dataset.look = '%1';"
                         "}).observe(document, {childList: true});"_s.arg(dark ? u"dark"_s : u"light"_s));
    return script;
}

class EngineView final : public WebView
{
public:
    explicit EngineView(const HelpBook &book)
        : m_book(book), m_profile(std::make_unique<QWebEngineProfile>()), m_view(new QWebEngineView)
    {
        m_profile->setUrlRequestInterceptor(new Guard(book, m_profile.get()));
        auto *page = new Page(m_profile.get(), book, m_view);
        limit(*page->settings());
        page->scripts().insert(lookMark());
        page->setBackgroundColor(QApplication::palette().color(QPalette::Base));
        m_view->setPage(page);
        m_view->setContextMenuPolicy(Qt::NoContextMenu);
        QObject::connect(page, &QWebEnginePage::loadStarted, m_view, [this] { m_busy = true; });
        QObject::connect(page, &QWebEnginePage::loadFinished, m_view, [this] { finished(); });
        QObject::connect(page, &QWebEnginePage::urlChanged, m_view, [this] { moved(); });
    }
    ~EngineView() override { delete m_view; }

    QWidget *widget() override { return m_view; }
    void Navigate(const QUrl &address) override { m_view->load(address); }
    void GoBack() override { m_view->back(); }
    void GoForward() override { m_view->forward(); }
    void GoHome() override { Navigate(m_book.home()); }
    void GoSearch() override { Navigate(m_book.search()); }
    void Refresh() override { m_view->reload(); }
    void Stop() override { m_view->stop(); }
    bool Busy() const override { return m_busy; }
    QString LocationName() const override { return m_view->title(); }
    QString LocationURL() const override { return m_view->url().toString(); }

private:
    void finished()
    {
        m_busy = false;
        if (DownloadComplete)
            DownloadComplete();
        if (NavigateComplete)
            NavigateComplete();
    }
    // A step to another place of the same page loads nothing.
    void moved()
    {
        if (!m_busy && NavigateComplete)
            NavigateComplete();
    }

    HelpBook m_book;
    std::unique_ptr<QWebEngineProfile>
        m_profile; // keeps nothing on the disk; goes after the page that stands on it
    QPointer<QWebEngineView> m_view;
    bool m_busy = false;
};

} // namespace

} // namespace vardelin

extern "C" Q_DECL_EXPORT vardelin::WebView *vardelinMakeWebView(const vardelin::HelpBook &book)
{
    QLoggingCategory::setFilterRules(
        QStringLiteral("qt.webenginecontext=false")); // a page of text on the terminal, of no use there
    return new vardelin::EngineView(book);
}
