// The browser window over a view that is played by hand, over the text browser, and over Qt WebEngine where
// it is built; and the book.

#include "shell/frmBrowser.h"
#include "tests/support/OfficeProgram.h"

#include <QComboBox>
#include <QDirIterator>
#include <QLineEdit>
#include <QRegularExpression>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

// The browser engine inside Qt WebEngine frees some of its own objects by another size.
extern "C" const char *__asan_default_options()
{
    return "new_delete_type_mismatch=0";
}

namespace {

const bool prepared = (prepareWebView(), true); // ahead of the application

struct PlayedView final : WebView
{
    QWidget *widget() override { return &m_widget; }
    void Navigate(const QUrl &address) override { note(u"Navigate "_s + address.toString()); }
    void GoBack() override { note(u"GoBack"_s); }
    void GoForward() override { note(u"GoForward"_s); }
    void GoHome() override { note(u"GoHome"_s); }
    void GoSearch() override { note(u"GoSearch"_s); }
    void Refresh() override { note(u"Refresh"_s); }
    void Stop() override { note(u"Stop"_s); }
    bool Busy() const override { return busy; }
    QString LocationName() const override { return name; }
    QString LocationURL() const override { return url; }
    void note(const QString &what) { calls += what; }

    QWidget m_widget;
    QStringList calls;
    bool busy = false;
    QString name, url;
};

void write(const QString &path, const QByteArray &text)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void press(QWidget &form, const QString &key)
{
    QTest::mouseClick(control<QToolButton>(&form, u"tbToolBar."_s + key), Qt::LeftButton);
}

TEST(frmBrowser, followsItsPageWithCaptionAndAddresses)
{
    OfficeProgram program;
    const HelpBook book{u"/book"_s};
    auto owned = std::make_unique<PlayedView>();
    PlayedView &view = *owned;
    view.busy = true;
    auto *form = new frmBrowser(program.global.services.errors, std::move(owned), book);
    const QPointer<frmBrowser> alive(form);
    form->show();
    EXPECT_EQ(view.calls, QStringList{u"Navigate file:///book/index.html"_s});
    auto *addresses = control<QComboBox>(form, u"cboAddress"_s);
    EXPECT_EQ(addresses->currentText(), u"file:///book/index.html"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form->windowTitle() == u"Whistle while you work ... "_s; }));

    view.busy = false;
    view.name = u"First"_s;
    view.url = u"file:///book/index.html"_s;
    EXPECT_TRUE(QTest::qWaitFor([&] { return form->windowTitle() == u"First"_s; }));
    view.NavigateComplete();
    EXPECT_EQ(addresses->count(), 1) << "the address was on the list";
    view.url = u"file:///book/next.html"_s;
    view.name = u"Next"_s;
    view.calls.clear();
    view.NavigateComplete();
    EXPECT_EQ(addresses->count(), 2);
    EXPECT_EQ(addresses->currentText(), view.url);
    EXPECT_EQ(form->windowTitle(), u"Next"_s);
    EXPECT_TRUE(view.calls.isEmpty()) << "putting the address in place navigates nowhere";

    for (const auto &key : {u"Back"_s, u"Forward"_s, u"Refresh"_s, u"Home"_s, u"Search"_s, u"Stop"_s})
        press(*form, key);
    EXPECT_EQ(view.calls, (QStringList{u"GoBack"_s, u"GoForward"_s, u"Refresh"_s, u"GoHome"_s, u"GoSearch"_s,
                                       u"Stop"_s}));
    view.calls.clear();
    addresses->lineEdit()->setText(u"example.org"_s);
    QTest::keyClick(addresses, Qt::Key_Return); // which has the focus for its line
    EXPECT_EQ(view.calls, QStringList{u"Navigate http://example.org"_s});
    form->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alive; })) << "a closed window is gone";
}

TEST(frmBrowser, showsTheBookAndNoOtherFileOfTheMachine)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"help"_s));
    write(folder.filePath(u"help/index.html"_s),
          "<html><head><title>First</title></head><body>one <a href=\"search.html\">s</a></body></html>");
    write(folder.filePath(u"help/search.html"_s),
          "<html><head><title>Search</title></head><body>two</body></html>");
    write(folder.filePath(u"secret.html"_s),
          "<html><head><title>Secret</title></head><body>three</body></html>");
    const HelpBook book{folder.filePath(u"help"_s)};
    EXPECT_TRUE(book.holds(book.home()));
    EXPECT_FALSE(book.holds(QUrl(book.home().toString() + u"/../../secret.html"_s)));
    EXPECT_FALSE(book.holds(book.page(u"../secret.html"_s)));
    ASSERT_TRUE(QFile::link(folder.filePath(u"secret.html"_s), folder.filePath(u"help/link.html"_s)));
    EXPECT_FALSE(book.holds(book.page(u"link.html"_s)));
    EXPECT_FALSE(book.holds(QUrl(u"http://example.org/index.html"_s)));

    std::vector<std::unique_ptr<WebView>> views;
    views.push_back(makeTextView(book));
#ifdef VARDELIN_WEB_FOLDER
    views.push_back(makeWebView(book, QStringLiteral(VARDELIN_WEB_FOLDER)));
    EXPECT_STRNE(views.back()->widget()->metaObject()->className(),
                 views.front()->widget()->metaObject()->className())
        << "the module library wasn't loaded";
#else
    std::cout << "Qt WebEngine isn't installed: its view is left out of this test.\n";
#endif
    views.push_back(makeWebView(book, u"/nowhere"_s)); // no library: the text browser
    for (const auto &view : views) {
        view->widget()->show();
        const auto shows = [&](const QString &name) {
            return QTest::qWaitFor([&] { return !view->Busy() && view->LocationName() == name; }, 20000);
        };
        QString told;
        view->NavigateComplete = [&] { told = view->LocationURL(); };
        view->Navigate(book.home());
        EXPECT_TRUE(shows(u"First"_s));
        EXPECT_EQ(told, book.home().toString());
        view->GoSearch();
        EXPECT_TRUE(shows(u"Search"_s));
        EXPECT_EQ(told, book.search().toString());
        view->GoBack();
        EXPECT_TRUE(shows(u"First"_s));
        EXPECT_EQ(told, book.home().toString());
        view->GoForward();
        EXPECT_TRUE(shows(u"Search"_s));
        view->Navigate(QUrl::fromLocalFile(folder.filePath(u"secret.html"_s)));
        QTest::qWait(300);
        EXPECT_NE(view->LocationName(), u"Secret"_s);
        view->GoHome();
        EXPECT_TRUE(shows(u"First"_s));
        view->NavigateComplete = {};
    }
}

#ifdef VARDELIN_WEB_FOLDER
TEST(frmBrowser, marksThePagesOfADarkDesktop)
{
    const QTemporaryDir folder;
    write(
        folder.filePath(u"index.html"_s),
        "<html><head><script>document.title = document.documentElement.dataset.look</script></head></html>");
    const HelpBook book{folder.path()};
    const QPalette before = QApplication::palette();
    for (const auto &[look, window] :
         {std::pair(u"dark"_s, QColor(40, 40, 40)), std::pair(u"light"_s, QColor(240, 240, 240))}) {
        QApplication::setPalette(QPalette(window));
        const auto view = makeWebView(book, QStringLiteral(VARDELIN_WEB_FOLDER));
        view->widget()->show();
        view->Navigate(book.home());
        EXPECT_TRUE(QTest::qWaitFor([&] { return !view->Busy() && view->LocationName() == look; }, 20000))
            << qPrintable(view->LocationName());
    }
    QApplication::setPalette(before);
}
#endif

// Every link, anchor and picture of the book that is put together leads somewhere.
TEST(HelpBook, hasNoDeadLinks)
{
    const QDir folder(QStringLiteral(VARDELIN_HELP));
    QHash<QString, QString> pages;
    for (const QString &name : folder.entryList({u"*.html"_s})) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        pages[name] = QString::fromUtf8(file.readAll());
    }
    ASSERT_TRUE(pages.contains(u"index.html"_s) && pages.contains(u"search.html"_s));
    static const QRegularExpression link(u"(?:href|src)=\"([^\"#]*)(?:#([^\"]*))?\""_s);
    for (auto page = pages.cbegin(); page != pages.cend(); ++page) {
        for (auto matches = link.globalMatch(page.value()); matches.hasNext();) {
            const auto match = matches.next();
            const QString target = match.captured(1).isEmpty() ? page.key() : match.captured(1);
            EXPECT_TRUE(folder.exists(target)) << qPrintable(page.key() + u" -> "_s + target);
            const QString anchor = match.captured(2);
            EXPECT_TRUE(anchor.isEmpty() || pages[target].contains(u"id=\"%1\""_s.arg(anchor)))
                << qPrintable(target + u'#' + anchor);
        }
        EXPECT_FALSE(page.value().contains(u'@'))
            << "a mark of the build is left on " << qPrintable(page.key());
    }
}

} // namespace
