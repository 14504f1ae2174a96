#pragma once
// A new item of the To Do list, written to the table at once.

#include "todo/ToDoItemWindow.h"

namespace vardelin {

class frmAddToToDo : public ToDoItemWindow
{
    Q_OBJECT
public:
    frmAddToToDo(Global &global, frmToDo &list);

private:
    QListWidget *makeList(const QString &name);
    void Form_Load();
    void mnuAllowance_Click();
    void mnuDone_Click() override;
    bool addItem(); // false: whose it is hasn't been told

    QListWidget *List1; // clients
    QListWidget *List2; // projects
};

} // namespace vardelin
