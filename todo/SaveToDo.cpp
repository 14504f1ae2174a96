#include "todo/SaveToDo.h"

#include "platform/data/Dao.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const QString kClientText = u"Active Client Things To Do"_s;

void emptyTable(dao::Recordset &things)
{
    if (things.BOF())
        return;
    while (!things.EOF_()) {
        things.Delete();
        things.MoveNext();
    }
    // There is no first row any more, so this is the engine's "No current record.", and the command ends
    // here: settled. The next Done finds an empty table and comes through.
    things.MoveFirst();
}

void emptyTexts(dao::Recordset &clients)
{
    if (clients.BOF())
        return;
    while (!clients.EOF_()) {
        clients.Edit();
        clients.SetField(kClientText, QString());
        clients.Update();
        clients.MoveNext();
    }
    clients.MoveFirst();
}

// An empty cell was Null in the table, or a date that nobody gave.
Value dateOf(const QString &cell)
{
    return cell.isEmpty() ? Value(NullValue{}) : Value(cell);
}

void writeRow(dao::Recordset &things, const ToDoRow &row, ToDoScratch &scratch)
{
    const ToDoOwner owner = ownerOf(row[1]);
    things.AddNew();
    things.SetField(u"TTD Priority"_s, row[0]);
    if (owner.isClient) {
        things.SetField(u"TTD Client Last Name"_s, owner.last);
        things.SetField(u"TTD Client First Name"_s, owner.first);
    } else {
        things.SetField(u"TTD Project"_s, owner.project);
    }
    scratch.List1 += owner.isClient ? owner.first : u" "_s;
    scratch.List2 += owner.isClient ? owner.last : u" "_s;
    things.SetField(u"ThingToDo"_s, row[2]);
    scratch.List3 += row[2];
    things.SetField(u"Thing To Do Start Date"_s, dateOf(row[3]));
    things.SetField(u"Thing To Do Deadline"_s, dateOf(row[4]));
    things.Update();
}

void fillTexts(dao::Recordset &clients, const ToDoScratch &scratch)
{
    for (int left = clients.RecordCount(); left > 0; --left) {
        const Value last = clients.Fields(u"Client Last Name"_s),
                    first = clients.Fields(u"Client First Name"_s);
        const QString text = last.isNull() || first.isNull()
                                 ? QString() // equals nothing
                                 : clientToDo(scratch, joinText(last), joinText(first));
        if (!text.isEmpty()) {
            clients.Edit();
            clients.SetField(kClientText, text);
            clients.Update();
        }
        clients.MoveNext();
    }
}

} // namespace

QString clientToDo(const ToDoScratch &scratch, const QString &lastName, const QString &firstName)
{
    QString text;
    for (qsizetype i = 0; i < scratch.List1.size(); ++i) {
        // Crosswise on purpose, last name against the first names: a text is filled only where the client's
        // last name is the item's first name and the other way round. The table is the record of what is to
        // be done, the text is no copy of it.
        if (lastName == scratch.List1[i] && firstName == scratch.List2[i])
            text += scratch.List3[i] + u"\r\n"_s;
    }
    return text;
}

void replaceToDo(dao::Recordset &things, dao::Recordset &clients, const std::vector<ToDoRow> &rows,
                 ToDoScratch &scratch)
{
    emptyTable(things);
    emptyTexts(clients);
    for (const ToDoRow &row : rows)
        writeRow(things, row, scratch);
    fillTexts(clients, scratch);
}

} // namespace vardelin
