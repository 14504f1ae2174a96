#pragma once
// The two kinds of child windows as the rest of the program knows them.

#include "platform/ui/ChildWindow.h"

#include <QStringList>

namespace vardelin {

class Adodc;

enum class PickList { Clients = 0, Employees = 1, Projects = 2, Rates = 3, Activities = 4 };

class EntryWindow : public ChildWindow
{
    Q_OBJECT
public:
    using ChildWindow::ChildWindow;
    virtual void setFile(const QString &path) = 0; // Label2
    virtual QString file() const = 0;
    virtual void refill(PickList list,
                        const QStringList &entries) = 0; // clears the list and copies the entries
    virtual void insertText(
        const QString &text) = 0;       // in place of the selection of the text field that last had the focus
    virtual void focusSummary() = 0;    // Text1
    virtual QString client() const = 0; // the text of Combo1
    // The tool tip of SQLWhere: the WHERE fragment by which this window's next search is narrowed.
    virtual QString whereFragment() const = 0;
    virtual void setWhereFragment(const QString &whereFragment) = 0;
};

class DisplayWindow : public ChildWindow
{
    Q_OBJECT
public:
    using ChildWindow::ChildWindow;
    virtual void setFile(const QString &path) = 0; // Label2
    virtual QString file() const = 0;
    // SQLWhere: the whole statement as its caption, the WHERE fragment as its tool tip.
    virtual void setSelection(const QString &statement, const QString &whereFragment) = 0;
    virtual QString whereFragment() const = 0;
    virtual void showSelection(const QString &statement) = 0; // RecordSource and Refresh
    virtual int recordCount() = 0;                            // of the selection
    virtual void showLast() = 0;
    virtual QString client() const = 0; // the text of Text1
    virtual Adodc &control() = 0;       // Adodc1, which the whole-file commands and the transfers work on
    // How far a long command has come, in the status line beside its text; 100 takes it away.
    virtual void showProgress(int percent) = 0;
};

} // namespace vardelin
