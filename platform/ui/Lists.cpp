// The combo boxes with free text and the sorted list box.
#include "platform/ui/Controls.h"

#include <QCollator>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QStringListModel>
#include <QWheelEvent>
#include <algorithm>

namespace vardelin {

namespace {

constexpr int kComboCharacters = 14; // a combo never grows to its longest entry

// Accents count after letters: É stands by E, and not behind Z.
QCollator makeCollator()
{
    QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

QStringList sorted(const QStringList &entries)
{
    QStringList list = entries;
    std::stable_sort(list.begin(), list.end(), listLess);
    return list;
}

} // namespace

bool listLess(const QString &left, const QString &right)
{
    static const QCollator collator = makeCollator();
    return collator.compare(left, right) < 0;
}

FreeCombo::FreeCombo(QWidget *parent) : QComboBox(parent), m_list(new QStringListModel(this))
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kComboCharacters);
    setModel(m_list);
    if (auto *list = qobject_cast<QListView *>(view()))
        list->setUniformItemSizes(true); // else every one of thousands is measured when the list drops
}

void FreeCombo::setText(const QString &text)
{
    setEditText(text);
}

void FreeCombo::setEntries(const QStringList &entries)
{
    const QString text = currentText();
    m_list->setStringList(entries);
    setCurrentIndex(-1);
    setEditText(text);
}

QStringList FreeCombo::entries() const
{
    return m_list->stringList();
}

void FreeCombo::setAccessibleCaption(const QString &caption)
{
    setAccessibleName(caption);
    lineEdit()->setAccessibleName(caption);
    view()->setAccessibleName(caption);
}

void FreeCombo::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

void SortedCombo::setEntries(const QStringList &entries)
{
    FreeCombo::setEntries(sorted(entries));
}

ListBox::ListBox(QWidget *parent) : QListWidget(parent)
{
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setUniformItemSizes(true);
}

void ListBox::addEntry(const QString &text)
{
    int low = 0;
    for (int high = count(); low < high;) {
        const int middle = (low + high) / 2;
        if (listLess(text, item(middle)->text()))
            high = middle;
        else
            low = middle + 1;
    }
    insertItem(low, text);
}

void ListBox::setEntries(const QStringList &entries)
{
    clear();
    addItems(sorted(entries));
}

QStringList ListBox::entries() const
{
    QStringList list;
    for (int row = 0; row < count(); ++row)
        list += item(row)->text();
    return list;
}

QList<int> ListBox::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : selectionModel()->selectedRows())
        rows += index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

void ListBox::removeRows(const QList<int> &rows)
{
    QList<int> doomed = rows;
    std::sort(doomed.begin(), doomed.end());
    doomed.erase(std::unique(doomed.begin(), doomed.end()), doomed.end());
    clearSelection(); // else each removal moves every range of it
    while (!doomed.isEmpty()) {
        const int last = doomed.takeLast();
        int first = last;
        while (!doomed.isEmpty() && doomed.constLast() == first - 1)
            first = doomed.takeLast();
        model()->removeRows(first, last - first + 1);
    }
}

void ListBox::keyPressEvent(QKeyEvent *event)
{
    const QPointer<ListBox> self = this;
    if (keyPressed)
        keyPressed(event->key());
    if (self)
        QListWidget::keyPressEvent(event);
}

} // namespace vardelin
