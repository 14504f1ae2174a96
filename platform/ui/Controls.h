#pragma once
// Small controls that Qt has not, or not with the manners that the windows need.

#include "platform/base/Value.h"
#include "platform/ui/ErrorFrame.h"
#include "platform/ui/Icons.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QToolBar>
#include <functional>

class QStringListModel;

namespace vardelin {

// Text order of sorted lists: without regard to case; equal ones in order of adding.
bool listLess(const QString &left, const QString &right);

// A combo box that takes free text beside its list. Nothing is looked up or completed while one types;
// picking or typing does nothing else. Text() is what the field holds.
class FreeCombo : public QComboBox
{
    Q_OBJECT
public:
    explicit FreeCombo(QWidget *parent = nullptr);
    QString Text() const { return currentText(); }
    void setText(const QString &text); // the field alone; the list stays
    // In the order given; the field keeps its text.
    virtual void setEntries(const QStringList &entries);
    QStringList entries() const;
    // What assistive technology says: on the field, where the focus is, and on the list.
    void setAccessibleCaption(const QString &caption);

protected:
    // Turning the wheel over a field on the way down a window would put an entry in place of what was typed.
    void wheelEvent(QWheelEvent *event) override;

private:
    QStringListModel *m_list;
};

class SortedCombo : public FreeCombo
{
    Q_OBJECT
public:
    using FreeCombo::FreeCombo;
    void setEntries(const QStringList &entries) override; // sorts
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
    QList<int> selectedRows() const;           // ascending
    void removeRows(const QList<int> &rows);   // in any order
    std::function<void(int qtKey)> keyPressed; // called ahead of the list's own handling

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

// The date and time picker: custom format "M/dd/yyyy hh:mm tt"; minutes are shown, the value keeps its
// seconds. The value is wall-clock time: no hour is left out or doubled in the nights of the time change.
class DateTimePicker : public QDateTimeEdit
{
    Q_OBJECT
public:
    explicit DateTimePicker(QWidget *parent = nullptr);
    ~DateTimePicker() override;
    DateSerial Value() const;
    void setValue(DateSerial value); // doesn't call edited
    std::function<void()> edited;    // the user changed it
    // The focus went to another control of the window. Not for an opened menu, calendar or dialog, nor for
    // another program: what had the focus has it again after those.
    std::function<void()> lostFocus;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override; // only with the focus

private:
    void followFocus(QWidget *now);
    void selectSection(int index);
    bool m_focused = false;
    bool m_wentOn = false; // to the next section by itself, with the last digit
};

// Calls `entered` when the mouse comes over a widget or one of its children that isn't watched itself: the
// hints of the status line.
void onMouseOver(QWidget *widget, std::function<void()> entered);

// A button of a tool bar: key, icon, text of its tip. The action's objectName is toolbar name & "." & key;
// name the bar first. The button is reached with Tab, and a click on it leaves the focus where it is. The
// first form runs the handler in the frame; the second one's handler must not throw.
QAction *addButton(QToolBar *bar, const QString &key, const QString &toolTip, ErrorFrame &frame,
                   std::function<void()> handler);
QAction *addButton(QToolBar *bar, const QString &key, const QString &toolTip, std::function<void()> handler);

// Puts the tool bars' buttons of a form behind its other controls in the order of Tab. Call when all stands.
void tabToButtonsLast(QWidget *form);

// A form's font by name and size text, as settings hold them. RunTimeError 13 where the size isn't a number,
// 380 where no font has it.
QFont formFont(const QString &name, const QString &sizeText);

} // namespace vardelin
