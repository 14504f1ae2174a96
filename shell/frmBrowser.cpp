#include "shell/frmBrowser.h"

#include "platform/base/Twips.h"
#include "platform/ui/Controls.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QToolBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kTick = 5;     // milliseconds
constexpr int kMargin = 100; // twips
constexpr QSize kSize{920, 680};

} // namespace

frmBrowser::frmBrowser(ErrorFrame &errors, std::unique_ptr<WebView> view, const HelpBook &book,
                       QWidget *owner)
    : QWidget(owner, Qt::Window), m_errors(errors), m_view(std::move(view)), m_book(book),
      tbToolBar(new QToolBar), cboAddress(new QComboBox)
{
    setObjectName(u"frmBrowser"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    timTimer.setObjectName(u"timTimer"_s);
    timTimer.setInterval(kTick);
    makeToolBar();
    layOut();
    connect(&timTimer, &QTimer::timeout, this, &frmBrowser::timTimer_Timer);
    m_view->DownloadComplete = [this] { brwWebBrowser_DownloadComplete(); };
    m_view->NavigateComplete = [this] { brwWebBrowser_NavigateComplete(); };
    connect(cboAddress, &QComboBox::activated, this, &frmBrowser::cboAddress_Click);
    cboAddress->installEventFilter(this); // it has the focus in place of its line
    Load();
}

void frmBrowser::makeToolBar()
{
    tbToolBar->setObjectName(u"tbToolBar"_s);
    tbToolBar->setAccessibleName(u"Browser"_s);
    const struct
    {
        QString key;
        QKeySequence shortcut;
        void (WebView::*command)();
    } buttons[] = {
        {u"Back"_s, QKeySequence(Qt::ALT | Qt::Key_Left), &WebView::GoBack},
        {u"Forward"_s, QKeySequence(Qt::ALT | Qt::Key_Right), &WebView::GoForward},
        {u"Refresh"_s, QKeySequence(Qt::Key_F5), &WebView::Refresh},
        {u"Home"_s, QKeySequence(Qt::ALT | Qt::Key_Home), &WebView::GoHome},
        {u"Search"_s, QKeySequence(Qt::CTRL | Qt::Key_F), &WebView::GoSearch},
    };
    for (const auto &button : buttons) {
        const QString tip = u"%1 (%2)"_s.arg(button.key, button.shortcut.toString(QKeySequence::NativeText));
        QAction *action = addButton(tbToolBar, button.key, tip, m_errors, [this, command = button.command] {
            timTimer.start();
            (m_view.get()->*command)();
        });
        action->setShortcut(button.shortcut);
    }
    QAction *stop = addButton(tbToolBar, u"Stop"_s, u"Stop (Esc)"_s, m_errors, [this] {
        timTimer.stop();
        m_view->Stop();
        setWindowTitle(m_view->LocationName());
    });
    stop->setShortcut(Qt::Key_Escape);
}

void frmBrowser::layOut()
{
    auto *picAddress = new QWidget;
    picAddress->setObjectName(u"picAddress"_s);
    auto *lblAddress = new QLabel(u"&Address:"_s);
    lblAddress->setObjectName(u"lblAddress"_s);
    lblAddress->setBuddy(cboAddress);
    cboAddress->setObjectName(u"cboAddress"_s);
    cboAddress->setEditable(true);
    cboAddress->setInsertPolicy(QComboBox::NoInsert);
    cboAddress->setCompleter(nullptr);
    cboAddress->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    cboAddress->setMinimumContentsLength(20);
    cboAddress->setAccessibleName(u"Address"_s);
    cboAddress->lineEdit()->setAccessibleName(u"Address"_s);
    QWidget *page = m_view->widget();
    page->setObjectName(u"brwWebBrowser"_s);
    page->setAccessibleName(u"Page"_s);

    const int margin = toPixels(kMargin);
    auto *address = new QHBoxLayout(picAddress);
    address->setContentsMargins(0, 0, 0, 0);
    address->addWidget(lblAddress);
    address->addWidget(cboAddress, 1);
    auto *lower = new QVBoxLayout;
    lower->setContentsMargins(margin, margin, margin, margin);
    lower->addWidget(picAddress);
    lower->addWidget(page, 1);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addWidget(tbToolBar);
    all->addLayout(lower, 1);
    resize(kSize.boundedTo(screen()->availableSize() * 9 / 10));
    page->setFocus();
}

void frmBrowser::Load()
{
    StartingAddress = m_book.home().toString();
    if (StartingAddress.isEmpty())
        return;
    cboAddress->addItem(StartingAddress);
    cboAddress->setEditText(StartingAddress);
    navigateTo(StartingAddress);
}

void frmBrowser::navigateTo(const QString &address)
{
    timTimer.start();
    m_view->Navigate(QUrl::fromUserInput(address));
}

void frmBrowser::cboAddress_Click()
{
    if (!DontNavigate)
        navigateTo(cboAddress->currentText());
}

// The line's own signal for Enter comes twice inside a combo box.
bool frmBrowser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            cboAddress_Click();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// The text that stands while a page loads is settled.
void frmBrowser::timTimer_Timer()
{
    if (m_view->Busy()) {
        setWindowTitle(u"Whistle while you work ... "_s);
        return;
    }
    timTimer.stop();
    setWindowTitle(m_view->LocationName());
}

void frmBrowser::brwWebBrowser_DownloadComplete()
{
    setWindowTitle(m_view->LocationName());
}

void frmBrowser::brwWebBrowser_NavigateComplete()
{
    setWindowTitle(m_view->LocationName());
    const QString address = m_view->LocationURL();
    int found = cboAddress->findText(address, Qt::MatchExactly | Qt::MatchCaseSensitive);
    DontNavigate = true;
    if (found < 0) {
        cboAddress->addItem(address);
        found = cboAddress->count() - 1;
    }
    cboAddress->setCurrentIndex(found);
    DontNavigate = false;
}

} // namespace vardelin
