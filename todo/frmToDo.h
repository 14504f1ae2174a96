#pragma once
// The To Do list of one file. The list control is the working copy: Done puts it in place of the table,
// anything else leaves the table alone.

#include "todo/SaveToDo.h"
#include "todo/ToDoView.h"

#include <QDialog>
#include <memory>

class QMenuBar;
class QToolBar;

namespace vardelin {

namespace dao {
class Database;
}
class RunTimeError;
struct FontSetting;
struct Global;

class frmToDo : public QDialog
{
    Q_OBJECT
public:
    explicit frmToDo(Global &global, QWidget *parent = nullptr);
    ~frmToDo() override;

    ToDoView &ListView1() { return *m_list; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override; // the list's scroll bar comes and goes

private:
    void layOut();
    void makeToolBar();
    QMenuBar *makeMenus();
    void Form_Load();
    void loadRows(std::vector<ToDoRow> &rows);
    void tellLoadError(const RunTimeError &error);
    void fitColumns();
    void setWidths(int listWidth, int allowance); // twips
    void mnuAddItem_Click();
    void mnuDeleteItem_Click();
    void mnuEditItem_Click();
    void mnuProgramFont_Click();
    void mnuPrintFont_Click();
    void mnuPrint_Click();
    void mnuDone_Click();
    bool chooseFont(FontSetting &font, const QString &nameSection, const QString &sizeSection,
                    const QString &keyStart);
    void exchangeFromMouse(int row);

    Global &m_global;
    ToDoView *m_list;
    QToolBar *m_bar;
    ToDoScratch m_scratch;
    std::unique_ptr<dao::Database> m_failed; // stays open after a Done that failed
};

} // namespace vardelin
