#pragma once
// A list of names to pick one from, over all of the main window.

#include <QDialog>

class QListWidget;

namespace vardelin {

struct Global;

// The list is the clients', employees' or projects' of the pick-list cache, by global.SearchType (1, 3, 4),
// in its order; for another type it is empty. A click on an entry, or Enter, stores it in SearchClient,
// SearchEmployee or SearchProject and ends exec(). Closed without one (Esc), the window leaves the variable
// as it was.
class frmSearchList : public QDialog
{
    Q_OBJECT
public:
    frmSearchList(Global &global, const QString &caption, QWidget *parent = nullptr);

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Form_Load();
    void List1_Click();

    Global &m_global;
    QListWidget *List1;
};

} // namespace vardelin
