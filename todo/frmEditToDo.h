#pragma once
// Changes one item of the To Do list: the old row of the table goes if it is found, and a new one is added at
// once.

#include "todo/ToDoItemWindow.h"

namespace vardelin {

namespace dao {
class Recordset;
}

class frmEditToDo : public ToDoItemWindow
{
    Q_OBJECT
public:
    frmEditToDo(Global &global, frmToDo &list);

private:
    void Form_Load();
    void mnuDone_Click() override;
    QString clientText() const; // "Last, First" of the shared names
    void replaceRow(const QString &priority);
    void deleteOldRow(dao::Recordset &things, const QString &priority) const;
    void addRow(dao::Recordset &things, const QString &priority) const;

    QLineEdit *Text1; // whose item it is; can't be changed
    QString m_owner;
    bool m_dated = false; // has a deadline
};

} // namespace vardelin
