#pragma once
// What the five windows that keep the pick lists have in common: fields to add from, the list, the menus. Add
// and Delete change the table at once; Done copies the list to the pick-list cache and the calling Data entry
// window; Return closes without that.

#include "database/Names.h"
#include "platform/data/Dao.h"
#include "platform/ui/Controls.h"
#include "platform/ui/MenuTable.h"
#include "shell/state/Windows.h"

#include <QDialog>
#include <QHash>
#include <QLineEdit>

class QMenuBar;

namespace vardelin {

struct Global;

// Where the windows differ.
struct ListWindowDesign
{
    QString name; // of the form
    QString caption;
    QString listCaption; // of the frame around the list
    PickList list = PickList::Clients;
    QString table;
    QString lastColumn;                   // the only column of a list of single names
    QString firstColumn;                  // empty there
    std::array<QString, 2> frameCaptions; // of Text1 and Text2
    std::array<QString, 2> textTips;
    QString listTip;
    QString emptyMessage;
    QString deleteCaption = QStringLiteral("&Delete");
    QString returnCaption = QStringLiteral("&Return");
    QString printCaption;    // empty: no such command
    QString printTitle = {}; // above the printed list; empty: none
    bool deleteKey = true;
    bool twoNames() const { return !firstColumn.isEmpty(); }
};

class ListWindow : public QDialog
{
    Q_OBJECT
public:
    ListWindow(Global &global, const ListWindowDesign &design, QWidget *parent);
    ~ListWindow() override;

protected:
    // More commands of one window, between Delete and Print list.
    void Form_Load(const std::vector<MenuEntry> &more = {});
    virtual void mnuAdd_Click();
    virtual void mnuDone_Click();
    virtual void escapeInText();               // Esc in the field that Enter adds from
    virtual bool listKeyPressed(int qtKey);    // true: handled
    virtual bool refuses(const QString &text); // a check of a new single name, with its message
    void mnuDelete_Click();
    void mnuPrintList_Click();
    void mnuReturn_Click();
    void fillList();
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    Global &m_global;
    const ListWindowDesign m_design;
    QLineEdit *Text1 = nullptr;
    QLineEdit *Text2 = nullptr; // windows of two names only
    ListBox *List1 = nullptr;

private:
    void layOut(QMenuBar *bar);
    QGroupBox *frame(const QString &name, const QString &caption, QWidget *field);
    QMenuBar *makeMenu(const std::vector<MenuEntry> &more);
    void addName();
    void addSingle();
    SplitName nameOf(const dao::Recordset &row) const; // a single name: as the last one
    QString entryOf(const SplitName &name) const;
    SplitName splitEntry(const QString &entry) const;
    // How many rows of each last and first name go, at most.
    void deleteRows(QHash<std::pair<QString, QString>, int> doomed);
    dao::Recordset &rows();
    QLineEdit *lastText() const { return Text2 ? Text2 : Text1; }

    std::unique_ptr<dao::Database> m_database; // open from Load to Unload
    std::unique_ptr<dao::Recordset> m_rows;
};

} // namespace vardelin
