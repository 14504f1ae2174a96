#pragma once
// The help: a small web browser that opens on the program's own help book.

#include "platform/web/WebView.h"

#include <QTimer>
#include <QWidget>

class QComboBox;
class QToolBar;

namespace vardelin {

class ErrorFrame;

class frmBrowser : public QWidget
{
    Q_OBJECT
public:
    // A window of its own that deletes itself when it is closed; `owner` may be null.
    frmBrowser(ErrorFrame &errors, std::unique_ptr<WebView> view, const HelpBook &book,
               QWidget *owner = nullptr);

    WebView &brwWebBrowser() { return *m_view; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void layOut();
    void makeToolBar();
    void Load();
    void navigateTo(const QString &address);
    void cboAddress_Click();
    void timTimer_Timer();
    void brwWebBrowser_DownloadComplete();
    void brwWebBrowser_NavigateComplete();

    ErrorFrame &m_errors;
    std::unique_ptr<WebView> m_view;
    HelpBook m_book;
    QString StartingAddress;
    bool DontNavigate = false;
    QToolBar *tbToolBar;
    QComboBox *cboAddress;
    QTimer timTimer;
};

} // namespace vardelin
