#include "platform/web/WebView.h"

#include <QFile>
#include <QPointer>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// Shows files of the book and nothing else.
class BookBrowser final : public QTextBrowser
{
public:
    explicit BookBrowser(const HelpBook &book) : m_book(book) {}

    QVariant loadResource(int type, const QUrl &name) override
    {
        const QUrl address = source().isEmpty() ? name : source().resolved(name);
        if (!m_book.holds(address))
            return type == QTextDocument::HtmlResource ? QVariant(notHere(address)) : QVariant();
        // The book's own style sheet asks for more than this browser can do.
        if (type == QTextDocument::StyleSheetResource)
            return textOf(m_book.page(u"plain.css"_s));
        if (type == QTextDocument::HtmlResource)
            return textOf(address);
        return QTextBrowser::loadResource(type, address);
    }

private:
    static QString textOf(const QUrl &address)
    {
        QFile file(address.toLocalFile());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    static QString notHere(const QUrl &address)
    {
        return u"<html><head><title>Not shown</title></head><body><p>%1</p><p>This page can't be shown here. "
               u"Where Qt WebEngine is "
               "installed, the window shows pages of the web too.</p></body></html>"_s.arg(
                   address.toDisplayString().toHtmlEscaped());
    }

    HelpBook m_book;
};

class TextView final : public WebView
{
public:
    explicit TextView(const HelpBook &book) : m_book(book), m_browser(new BookBrowser(book))
    {
        m_browser->setOpenExternalLinks(false);
        m_browser->document()->setDocumentMargin(16);
        // The browser tells of a new page before its own source() is that page's.
        QObject::connect(m_browser, &QTextBrowser::sourceChanged, m_browser, [this](const QUrl &address) {
            m_address = address;
            loaded();
        });
    }
    ~TextView() override { delete m_browser; }

    QWidget *widget() override { return m_browser; }
    void Navigate(const QUrl &address) override
    {
        m_browser->setSource(address, QTextDocument::HtmlResource);
    }
    void GoBack() override { m_browser->backward(); }
    void GoForward() override { m_browser->forward(); }
    void GoHome() override { Navigate(m_book.home()); }
    void GoSearch() override { Navigate(m_book.search()); }
    void Refresh() override
    {
        m_browser->reload();
        loaded();
    }
    void Stop() override {}
    bool Busy() const override { return false; } // a page stands as soon as it is asked for
    QString LocationName() const override { return m_browser->documentTitle(); }
    QString LocationURL() const override { return m_address.toString(); }

private:
    void loaded()
    {
        if (DownloadComplete)
            DownloadComplete();
        if (NavigateComplete)
            NavigateComplete();
    }

    HelpBook m_book;
    QPointer<BookBrowser> m_browser;
    QUrl m_address;
};

} // namespace

std::unique_ptr<WebView> makeTextView(const HelpBook &book)
{
    return std::make_unique<TextView>(book);
}

} // namespace vardelin
