// The look of the Data entry window: its controls and where they stand.
#include "entry/frmEntryWithFrames.h"

#include "platform/ui/Controls.h"
#include "platform/ui/NotesEdit.h"
#include "shell/state/Global.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QToolButton>
#include <limits>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kMargin = 10;        // device-independent pixels around and between the frames
constexpr int kNotesLines = 4;     // the least that is seen of the notes
constexpr int kActivitiesRows = 9; // the pop-up's height
constexpr int kActivitiesCharacters = 40;

template <class Control>
Control *named(Control *control, const QString &name)
{
    control->setObjectName(name);
    return control;
}

QLabel *hiddenLabel(QWidget *owner, const QString &name)
{
    auto *label = named(new QLabel(owner), name);
    label->setTextFormat(Qt::PlainText);
    label->hide();
    return label;
}

} // namespace

void frmEntryWithFrames::makeControls()
{
    makeFields();
    makeFrames();
    makeMainToolbar();
    makeToolbars();
    layOut();
    setTabOrders();
    Combo1->setFocus();
}

void frmEntryWithFrames::makeFields()
{
    Combo1 = named(new SortedCombo(this), u"Combo1"_s);
    Combo2 = named(new SortedCombo(this), u"Combo2"_s);
    Combo3 = named(new SortedCombo(this), u"Combo3"_s);
    Combo4 = named(new SortedCombo(this), u"Combo4"_s);
    Text1 = named(new QLineEdit(this), u"Text1"_s);
    Text1->setMaxLength(std::numeric_limits<int>::max());
    RichTextBox1 = named(new NotesEdit(this), u"RichTextBox1"_s);
    RichTextBox1->setTabChangesFocus(true);
    DTPicker1 = named(new DateTimePicker(this), u"DTPicker1"_s);
    DTPicker2 = named(new DateTimePicker(this), u"DTPicker2"_s);
    List1 = named(new ListBox(this), u"List1"_s);
    List1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    List1->setToolTip(u"Select an item and then press [Enter]"_s);
    List1->setAccessibleName(u"Activities"_s);
    List1->hide();
    Label1 = named(new QLabel(this), u"Label1"_s);
    Label1->setTextFormat(Qt::PlainText);
    Label1->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // a long path doesn't widen the window
    Label2 = hiddenLabel(this, u"Label2"_s);
    Label3 = hiddenLabel(this, u"Label3"_s);
    SQLWhere = hiddenLabel(this, u"SQLWhere"_s);
}

void frmEntryWithFrames::makeFrames()
{
    const auto frame = [this](int number, const QString &caption) {
        return named(new QGroupBox(caption, this), u"Frame%1"_s.arg(number));
    };
    Frame1 = frame(1, u"Client"_s);
    Frame2 = frame(2, u"Employee (or user)"_s);
    Frame3 = frame(3, u"Project"_s);
    Frame4 = frame(4, u"Rate (hourly)"_s);
    Frame5 = frame(5, u"Invoice summary line"_s);
    Frame6 = frame(6, u"Vardelin notes"_s);
    Frame7 = frame(7, u"Beginning Time"_s);
    Frame8 = frame(8, u"Ending Time"_s);
}

void frmEntryWithFrames::makeMainToolbar()
{
    Toolbar1 = named(new QToolBar(u"Tools"_s, this), u"Toolbar1"_s);
    const auto button = [this](const QString &key, const QString &toolTip, std::function<void()> handler) {
        addButton(Toolbar1, key, toolTip, m_global.services.errors, std::move(handler));
    };
    const auto presses = [this](const QString &menu) {
        return [this, menu] { menuAction(menu)->trigger(); };
    };
    button(u"Back"_s, u"Go back to another Data Entry or Display window"_s,
           [this] { goBackOrForward(true); });
    button(u"Forward"_s, u"Go forward to another Data Entry or Display window"_s,
           [this] { goBackOrForward(false); });
    Toolbar1->addSeparator();
    button(u"Cut"_s, u"Cut selected text or graphic"_s, presses(u"mnuCut"_s));
    button(u"Copy"_s, u"Copy selected text or graphic"_s, presses(u"mnuCopy"_s));
    button(u"Paste"_s, u"Paste into selected area"_s, presses(u"mnuEPaste"_s));
    Toolbar1->addSeparator();
    button(u"New"_s, u"Create a new Data Entry window"_s, [this] { m_global.openers.NewEntryWindow(); });
    button(u"Find"_s, u"Search"_s, presses(u"mnuSearch"_s));
    button(u"Help"_s, u"Help"_s, presses(u"mnuWeb"_s));
}

void frmEntryWithFrames::makeToolbars()
{
    const auto toolbar = [this](int number, QGroupBox *frame) {
        auto *bar = named(new QToolBar(frame), u"Toolbar%1"_s.arg(number));
        const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
        bar->setIconSize(QSize(side, side));
        bar->layout()->setContentsMargins(0, 0, 0, 0); // no taller than the field beside it
        return bar;
    };
    const auto opens = [this](QToolBar *bar, const QString &key, const QString &toolTip,
                              const QString &menu) {
        addButton(bar, key, toolTip, m_global.services.errors, [this, menu] { menuAction(menu)->trigger(); });
    };
    const auto renames = [this](QToolBar *bar, const CaptionField &field) {
        addButton(bar, u"Small Caps"_s, u"Change caption for this field"_s, m_global.services.errors,
                  [this, field] { editCaption(field); });
    };
    Toolbar2 = toolbar(2, Frame1);
    opens(Toolbar2, u"Properties"_s, u"Change list entries"_s, u"mnuCClient"_s);
    opens(Toolbar2, u"View Details"_s, u"Go to contact database"_s, u"mnuActiveClients"_s);
    renames(
        Toolbar2,
        {Frame1, &Global::ClientCaption, u"Frame1Caption"_s, u"Default Frame1 Caption"_s,
         u"Type in the caption that you want for this field.   Possible options are Client, Customer, Patient, Contractor, or any other desciption of the person or entity on behalf of whom you are performing this activity"_s});
    Toolbar3 = toolbar(3, Frame2);
    opens(Toolbar3, u"Properties"_s, u"Change list entries"_s, u"mnuEmployees"_s);
    renames(
        Toolbar3,
        {Frame2, &Global::EmployeeCaption, u"Frame2Caption"_s, u"Default Frame2 Caption"_s,
         u"Type in the caption that you want for this field.   Possible options are Co-worker, Employee, Sales Agent, User or any other desciption of the person who is performing this activity"_s});
    Toolbar4 = toolbar(4, Frame3);
    opens(Toolbar4, u"Properties"_s, u"Change list entries"_s, u"mnuProject"_s);
    renames(
        Toolbar4,
        {Frame3, &Global::ProjectCaption, u"Frame3Caption"_s, u"Default Frame3 Caption"_s,
         u"Type in the caption that you want for this field.   Possible options are Project, Type of Activity or any other desciption of the activity that is being performed"_s});
    Toolbar5 = toolbar(5, Frame5);
    renames(
        Toolbar5,
        {Frame5, nullptr, u"Frame5Caption"_s, u"Default Frame5 Caption"_s,
         u"Type in the caption that you want for this field.   Possible options are Summary, Invoice Summary Line, Brief Description or any other phrase that indicates this is a brief description of the item described in the Vardelin notes field"_s});
    Toolbar6 = toolbar(6, Frame4);
    opens(Toolbar6, u"Properties"_s, u"Change rate list entries"_s, u"mnuRates"_s);
}

void frmEntryWithFrames::layOut()
{
    const auto fill = [](QGroupBox *frame, QWidget *field, QToolBar *tools) {
        auto *row = new QHBoxLayout(frame);
        row->setContentsMargins(6, 3, 6, 6);
        row->setSpacing(4);
        row->addWidget(field, 1);
        if (tools)
            row->addWidget(tools);
    };
    fill(Frame1, Combo1, Toolbar2);
    fill(Frame2, Combo2, Toolbar3);
    fill(Frame3, Combo3, Toolbar4);
    fill(Frame4, Combo4, Toolbar6);
    fill(Frame5, Text1, Toolbar5);
    fill(Frame6, RichTextBox1, nullptr);
    fill(Frame7, DTPicker1, nullptr);
    fill(Frame8, DTPicker2, nullptr);

    m_body = new QScrollArea(this);
    m_body->setFrameShape(QFrame::NoFrame);
    m_body->setWidgetResizable(true);
    m_body->setFocusPolicy(Qt::NoFocus);
    auto *content = new QWidget;
    m_grid = new QGridLayout(content);
    m_grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    m_grid->setSpacing(kMargin);
    m_grid->setColumnStretch(0, 1);
    m_grid->setColumnStretch(1, 1);
    m_body->setWidget(content);
    arrangeFrames();

    Label1->setMargin(3);
    Label1->setIndent(kMargin - 3);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(Toolbar1);
    column->addWidget(m_body, 1);
    column->addWidget(Label1);
}

// The frames in their order from the top: in pairs where the window is wide enough for it, else each on its
// own row; the notes get what height is left.
void frmEntryWithFrames::arrangeFrames()
{
    const auto fits = [this](std::initializer_list<QWidget *> frames) {
        int half = 0;
        for (const QWidget *frame : frames)
            half = std::max(half, frame->minimumSizeHint().width());
        return m_body->width() >= 2 * half + 3 * kMargin;
    };
    const std::pair arrangement{fits({Frame1, Frame2, Frame3, Frame4}), fits({Frame7, Frame8})};
    if (arrangement == m_paired)
        return;
    m_paired = arrangement;
    const auto [fields, pickers] = arrangement;
    for (int line = 0; line < m_grid->rowCount(); ++line)
        m_grid->setRowStretch(line, 0);
    int row = 0;
    const auto whole = [&](QWidget *frame) { m_grid->addWidget(frame, row++, 0, 1, 2); };
    const auto place = [&](QWidget *first, QWidget *second, bool paired) {
        if (!paired) {
            whole(first);
            whole(second);
            return;
        }
        m_grid->addWidget(first, row, 0);
        m_grid->addWidget(second, row++, 1);
    };
    place(Frame1, Frame2, fields);
    place(Frame3, Frame4, fields);
    whole(Frame5);
    m_grid->setRowStretch(row, 1);
    whole(Frame6);
    place(Frame7, Frame8, pickers);
}

// Fields first, so that typing through a log takes no step aside; then the buttons, which no menu replaces.
void frmEntryWithFrames::setTabOrders()
{
    const QWidgetList fields{Combo1, Combo2, Combo3, Combo4, Text1, RichTextBox1, DTPicker1, DTPicker2};
    for (qsizetype i = 1; i < fields.size(); ++i)
        setTabOrder(fields[i - 1], fields[i]);
    tabToButtonsLast(this);
}

// What a screen reader says of each field: its frame's caption, or the field's first name where that is
// blank.
void frmEntryWithFrames::nameFields()
{
    const auto spoken = [](const QGroupBox *frame, const QString &fallback) {
        const QString caption = frame->title().remove(u'&').trimmed();
        return caption.isEmpty() ? fallback : caption;
    };
    Combo1->setAccessibleCaption(spoken(Frame1, u"Client"_s));
    Combo2->setAccessibleCaption(spoken(Frame2, u"Employee"_s));
    Combo3->setAccessibleCaption(spoken(Frame3, u"Project"_s));
    Combo4->setAccessibleCaption(spoken(Frame4, u"Rate"_s));
    Text1->setAccessibleName(spoken(Frame5, u"Summary"_s));
    RichTextBox1->setAccessibleName(Frame6->title());
    DTPicker1->setAccessibleName(Frame7->title());
    DTPicker2->setAccessibleName(Frame8->title());
}

// Under the field that called the list, above its caret's line where there is no room below.
void frmEntryWithFrames::placeActivities()
{
    QWidget *field = m_global.SummaryHasFocus ? static_cast<QWidget *>(Text1) : RichTextBox1->viewport();
    QRect line = m_global.SummaryHasFocus ? Text1->rect() : RichTextBox1->cursorRect();
    line.moveTopLeft(field->mapTo(this, line.topLeft()));
    const int rowHeight = std::max(List1->sizeHintForRow(0), List1->fontMetrics().height());
    const int frame = 2 * List1->frameWidth();
    const int wantedHeight = std::min(std::max(List1->count(), 1), kActivitiesRows) * rowHeight + frame;
    const int below = height() - kMargin - line.bottom(), above = line.top() - kMargin;
    const bool under = below >= wantedHeight || below >= above;
    const int listHeight = std::min(wantedHeight, std::max(under ? below : above, 2 * rowHeight + frame));
    const int listWidth =
        std::min(width() - 2 * kMargin, kActivitiesCharacters * List1->fontMetrics().averageCharWidth());
    const int left = std::clamp(line.left(), kMargin, std::max(kMargin, width() - kMargin - listWidth));
    const int top = under ? line.bottom() + 2 : line.top() - listHeight - 2;
    List1->setGeometry(left, std::max(0, top), listWidth, listHeight);
}

void frmEntryWithFrames::resizeEvent(QResizeEvent *event)
{
    EntryWindow::resizeEvent(event);
    RichTextBox1->setMinimumHeight(kNotesLines * RichTextBox1->fontMetrics().lineSpacing() +
                                   2 * RichTextBox1->frameWidth() + 8);
    arrangeFrames();
    if (List1->isVisible())
        placeActivities();
}

QSize frmEntryWithFrames::sizeHint() const
{
    return {640, 560};
}

} // namespace vardelin
