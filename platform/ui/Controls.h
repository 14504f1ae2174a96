#pragma once
// Small controls that Qt has not, or not with the manners that the windows need.

#include "platform/base/Value.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QToolBar>
#include <functional>

namespace vardelin {

// Text order of sorted lists: without regard to case; equal ones in order of adding.
bool listLess(const QString &left, const QString &right);

// A combo box that takes free text beside its sorted list. Nothing is looked up or completed while one types;
// picking or typing does nothing else. Text() is what the field holds.
class SortedCombo : public QComboBox
{
    Q_OBJECT
public:
    explicit SortedCombo(QWidget *parent = nullptr);
    QString Text() const { return currentText(); }
    void setText(const QString &text);           // the field alone; the list stays
    void setEntries(const QStringList &entries); // sorts; the field keeps its text
    QStringList entries() const;
};

// A sorted list box, extended or multiple selection. 5,000 entries fill at once.
class ListBox : public QListWidget
{
    Q_OBJECT
public:
    explicit ListBox(QWidget *parent = nullptr);
    void addEntry(const QString &text); // at its sorted place
    void setEntries(const QStringList &entries);
    QStringList entries() const;
    QList<int> selectedRows() const; // ascending
    void removeRows(const QList<int> &rows);
    std::function<void(int qtKey)> keyPressed; // called ahead of the list's own handling

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

// The date and time picker: custom format "M/dd/yyyy hh:mm tt"; minutes are shown, the value keeps its
// seconds.
class DateTimePicker : public QDateTimeEdit
{
    Q_OBJECT
public:
    explicit DateTimePicker(QWidget *parent = nullptr);
    DateSerial Value() const;
    void setValue(DateSerial value); // doesn't call edited
    std::function<void()> edited;    // the user changed it
    std::function<void()>
        lostFocus; // the focus went to another control; not for an opened menu or another program

protected:
    void focusOutEvent(QFocusEvent *event) override;
};

// Calls `entered` when the mouse comes over a widget or one of its children that isn't watched itself: the
// hints of the status line.
void onMouseOver(QWidget *widget, std::function<void()> entered);

// A button of a tool bar: key, icon, text of its tip. The action's objectName is toolbar name & "." & key.
QAction *addButton(QToolBar *bar, const QString &key, const QString &toolTip, std::function<void()> handler);

// The picture of a key ("Back", "Cut", "Small Caps"...), drawn for the palette: our own SVG under :/icons.
QIcon keyIcon(const QString &key);

// A form's font by name and size text, as settings hold them; RunTimeError 13 where the size isn't a number.
QFont formFont(const QString &name, const QString &sizeText);

} // namespace vardelin
