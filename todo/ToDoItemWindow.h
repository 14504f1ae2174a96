#pragma once
// What the windows that add and edit an item have in common: tool bar and menus, priorities, deadline, the
// text of the item with its keys, and the activities to pick from.

#include "platform/ui/Controls.h"
#include "platform/ui/MenuTable.h"

#include <QDialog>
#include <QLineEdit>

class QFormLayout;
class QRadioButton;

namespace vardelin {

struct Global;
class frmToDo;

class ToDoItemWindow : public QDialog
{
    Q_OBJECT
protected:
    struct Design
    {
        QString name, caption;
        QString textName;   // of the item's text box
        QString pickerName; // of the list of activities
        bool onlyFirst;     // of the activities selected
        QColor priorityColour;
    };
    ToDoItemWindow(Global &global, frmToDo &list, const Design &design);

    virtual void mnuDone_Click() = 0;
    void mnuReturn_Click() { reject(); }

    // Builds the window. lists: what stands above the fields, or null. more: commands between Return and
    // Done.
    void layOut(QLayout *lists, const std::vector<MenuEntry> &more = {});
    // Fills the picker, and the main window's list of *employees*, from Activities; an empty table leaves
    // both.
    void loadActivities();
    int selectedPriority() const; // 1 to 5
    void placeBeside();           // the list's window

    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    Global &m_global;
    frmToDo &m_list;
    const Design m_design;
    QLineEdit *m_text;
    DateTimePicker *DTPicker1;
    ListBox *m_picker;     // over the whole window while it is called up
    QFormLayout *m_fields; // before layOut(): what stands above the item's text
    std::vector<QRadioButton *> Option1;

private:
    QWidget *makePriorities();
    void callPicker();
    bool pickerKey(int key);
};

} // namespace vardelin
