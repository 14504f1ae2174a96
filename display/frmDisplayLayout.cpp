// The controls of the Display window: made, bound, named, placed.

#include "display/frmDisplay.h"
#include "platform/ui/MenuTable.h"
#include "shell/state/EditCommands.h"
#include "shell/state/Global.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QScrollArea>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kMargin = 12;
constexpr int kProgressWidth = 140; // pixels

} // namespace

void frmDisplay::makeFields()
{
    struct Field
    {
        FocusField *frmDisplay::*member;
        QString name;
        QString caption;
    };
    const Field fields[]{{&frmDisplay::Text1, u"Text1"_s, m_global.ClientCaption},
                         {&frmDisplay::Text2, u"Text2"_s, m_global.EmployeeCaption},
                         {&frmDisplay::Text3, u"Text3"_s, m_global.ProjectCaption},
                         {&frmDisplay::Text4, u"Text4"_s, u"Hourly rate"_s},
                         {&frmDisplay::Text5, u"Text5"_s, u"Summary"_s},
                         {&frmDisplay::Text6, u"Text6"_s, u"Fee"_s},
                         {&frmDisplay::Text7, u"Text7"_s, u"Beginning time"_s},
                         {&frmDisplay::Text8, u"Text8"_s, u"Duration (hours)"_s},
                         {&frmDisplay::Text9, u"Text9"_s, u"Ending time"_s}};
    for (const Field &field : fields) {
        auto *edit = new FocusField;
        edit->setObjectName(field.name);
        edit->setAccessibleName(field.caption);
        this->*field.member = edit;
    }
    makeNotes();
    makeNavigator();
    makeLabels();
}

void frmDisplay::makeNotes()
{
    for (NotesEdit **box : {&RichTextBox1, &RichTextBox2})
        *box = new NotesEdit;
    RichTextBox1->setObjectName(u"RichTextBox1"_s);
    RichTextBox1->setAccessibleName(u"Notes, graphics view"_s);
    RichTextBox2->setObjectName(u"RichTextBox2"_s);
    RichTextBox2->setAccessibleName(u"Notes, text view"_s);
    RichTextBox2->setAcceptRichText(false);
    m_views = new QStackedWidget;
    m_views->addWidget(RichTextBox2);
    m_views->addWidget(RichTextBox1);
}

void frmDisplay::makeNavigator()
{
    m_navigator = new RecordNavigator(Adodc1, m_global.services.dialogs, m_global.services.errors);
    m_navigator->setObjectName(u"Adodc1"_s);
    m_navigator->setToolTip(
        u"Use this Data Navigator to access adjoining records or to go to the first or last record"_s);
    Slider1 = new ReleaseSlider(Qt::Horizontal);
    Slider1->setObjectName(u"Slider1"_s);
    Slider1->setAccessibleName(u"Position in the records"_s);
    Slider1->setRange(0, 100);
    Slider1->setSingleStep(1);
    Slider1->setPageStep(5);
}

void frmDisplay::makeLabels()
{
    Label1 = new QLabel;
    Label1->setObjectName(u"Label1"_s);
    Label1->setTextFormat(Qt::PlainText);
    Label2 = new QLabel(this);
    Label2->setObjectName(u"Label2"_s);
    Label2->hide();
    SQLWhere = new QLabel(this);
    SQLWhere->setObjectName(u"SQLWhere"_s);
    SQLWhere->hide();
}

void frmDisplay::makeToolbar()
{
    Toolbar1 = new QToolBar;
    Toolbar1->setObjectName(u"Toolbar1"_s);
    Toolbar1->setAccessibleName(u"Commands"_s);
    const auto add = [this](const char16_t *key, const char16_t *toolTip, std::function<void()> handler) {
        addButton(Toolbar1, QString::fromUtf16(key), QString::fromUtf16(toolTip), m_global.services.errors,
                  std::move(handler));
    };
    // A button with a command of the menu calls it, so that each action has one implementation.
    const auto menu = [this](const char16_t *name) {
        return [this, name] { findChild<QAction *>(QString::fromUtf16(name))->trigger(); };
    };
    add(u"Back", u"Go back to another Display or Data Entry window", [this] { Back_Click(); });
    add(u"Forward", u"Go forward to another Display or Data Entry window", [this] { Forward_Click(); });
    Toolbar1->addSeparator();
    add(u"Print", u"Print Displayed Vardelin", menu(u"mnuPrintVardelin"));
    add(u"Cut", u"Cut selected text or graphic", menu(u"mnuCut"));
    add(u"Copy", u"Copy selected text or graphic", menu(u"mnuCopy"));
    add(u"Paste", u"Paste into selected area", menu(u"mnuDPaste"));
    add(u"Save", u"Save changes made to this Vardelin", menu(u"mnuSaveChanges"));
    Toolbar1->addSeparator();
    add(u"Help", u"Help", menu(u"mnuInternet"));
}

void frmDisplay::bindFields()
{
    struct Binding
    {
        FocusField *field;
        QString column;
    };
    const Binding bindings[]{
        {Text1, u"Client"_s},         {Text2, u"Employee"_s},    {Text3, u"Project"_s},
        {Text4, u"Rate"_s},           {Text5, u"Log Summary"_s}, {Text6, u"Fee"_s},
        {Text7, u"Beginning Time"_s}, {Text8, u"Duration"_s},    {Text9, u"Ending Time"_s}};
    for (const Binding &binding : bindings) {
        FocusField *field = binding.field;
        Adodc1.bind({binding.column,
                     [field](const QString &text) {
                         field->setText(text);
                         field->setCursorPosition(0);
                     },
                     [field] { return field->text(); }});
    }
    // The boxes give back what is stored, letter for letter, unless the user changed something in them.
    Adodc1.bind({u"Vardelin"_s,
                 [this](const QString &text) {
                     m_text = text;
                     RichTextBox2->setText(text);
                     RichTextBox2->document()->setModified(false);
                 },
                 [this] { return RichTextBox2->document()->isModified() ? RichTextBox2->Text() : m_text; }});
    Adodc1.bind({u"VardeGraphic"_s,
                 [this](const QString &rtf) {
                     m_graphic = rtf;
                     m_graphicShown = false;
                     if (m_views->currentWidget() == RichTextBox1)
                         showGraphic();
                 },
                 [this] {
                     return m_graphicShown && RichTextBox1->document()->isModified() ? RichTextBox1->TextRTF()
                                                                                     : m_graphic;
                 }});
    Adodc1.MoveComplete = [this](MoveReason reason) { Adodc1_MoveComplete(reason); };
    // The data control shows an error by itself, and the record stays.
    Adodc1.onError = [this](const RunTimeError &error) {
        m_global.services.dialogs.msgBox({.prompt = error.description(), .icon = Icon::Exclamation});
    };
    Slider1->mouseReleased = [this] { m_global.services.errors.run([this] { Slider1_MouseUp(); }); };
    Slider1->keyMoved = [this](int direction) {
        m_global.services.errors.run([this, direction] { Slider1_KeyMoved(direction); });
    };
    // A rate that is no number is told; a tip that can't be worked out is no reason to end the program.
    Text4->lostFocus = [this] {
        try {
            Text4_LostFocus();
        } catch (const RunTimeError &error) {
            m_global.services.errors.report(error);
        }
    };
}

// The fields in order of Tab, and where each stands in the grid: column and number of columns in a wide
// window, with three columns of two, and in a narrow one, with two.
struct frmDisplay::Cell
{
    FocusField *frmDisplay::*field;
    int wideRow, wideColumn, wideColumns;
    int narrowRow, narrowColumn, narrowColumns;
};

const std::vector<frmDisplay::Cell> &frmDisplay::cells()
{
    static const std::vector<Cell> cells{
        {&frmDisplay::Text1, 0, 0, 2, 0, 0, 1}, {&frmDisplay::Text2, 0, 2, 2, 0, 1, 1},
        {&frmDisplay::Text3, 0, 4, 2, 1, 0, 2}, {&frmDisplay::Text5, 1, 0, 4, 2, 0, 2},
        {&frmDisplay::Text4, 1, 4, 1, 3, 0, 1}, {&frmDisplay::Text6, 1, 5, 1, 3, 1, 1},
        {&frmDisplay::Text7, 2, 0, 2, 4, 0, 1}, {&frmDisplay::Text9, 2, 2, 2, 4, 1, 1},
        {&frmDisplay::Text8, 2, 4, 2, 5, 0, 1}};
    return cells;
}

void frmDisplay::layOut()
{
    auto *content = new QWidget;
    m_grid = new QGridLayout;
    m_grid->setHorizontalSpacing(12);
    m_grid->setVerticalSpacing(2);
    for (const Cell &cell : cells()) {
        FocusField *field = this->*cell.field;
        auto *caption = new QLabel(field->accessibleName().replace(u'&', u"&&"_s));
        caption->setTextFormat(Qt::PlainText);
        caption->setBuddy(field);
        caption->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        m_captions.push_back(caption);
    }
    auto *inside = new QVBoxLayout(content);
    inside->setContentsMargins(kMargin, 8, kMargin, 8);
    inside->setSpacing(8);
    inside->addLayout(m_grid);
    inside->addWidget(m_views, 1);
    m_views->setMinimumHeight(72);
    m_body = new QScrollArea;
    m_body->setFrameShape(QFrame::NoFrame);
    m_body->setWidgetResizable(true);
    m_body->setFocusPolicy(Qt::NoFocus);
    m_body->setWidget(content);
    arrangeFields();

    auto *lower = new QHBoxLayout;
    lower->setContentsMargins(kMargin, 4, kMargin, 0);
    lower->setSpacing(kMargin);
    lower->addWidget(m_navigator, 2);
    lower->addWidget(Slider1, 3);
    Label1->setMargin(3);
    Label1->setIndent(kMargin - 3);
    Label1->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addWidget(Toolbar1);
    all->addWidget(m_body, 1);
    all->addLayout(lower);
    m_progress = new QProgressBar;
    m_progress->setObjectName(u"Progress"_s);
    m_progress->setAccessibleName(u"Progress"_s);
    m_progress->setFixedWidth(kProgressWidth);
    m_progress->hide();
    auto *status = new QHBoxLayout;
    status->setContentsMargins(0, 0, kMargin, 0);
    status->addWidget(Label1, 1);
    status->addWidget(m_progress);
    all->addLayout(status);
    setTabOrders();
    giveClipboardKeysToMenu(this);
    Text1->setFocus();
}

// Three fields abreast where a date and time has room in each, else two.
void frmDisplay::arrangeFields()
{
    const int date = Text7->fontMetrics().horizontalAdvance(u"12/28/2026 10:28:38 PM  "_s);
    const bool wide = width() >= 3 * date + 4 * kMargin;
    if (wide == m_wide)
        return;
    m_wide = wide;
    for (std::size_t i = 0; i < cells().size(); ++i) {
        const Cell &cell = cells()[i];
        const int row = 2 * (wide ? cell.wideRow : cell.narrowRow);
        const int column = wide ? cell.wideColumn : cell.narrowColumn;
        const int columns = wide ? cell.wideColumns : cell.narrowColumns;
        m_grid->addWidget(m_captions[i], row, column, 1, columns);
        m_grid->addWidget(this->*cell.field, row + 1, column, 1, columns);
    }
    for (int column = 0; column < 6; ++column)
        m_grid->setColumnStretch(column, wide || column < 2 ? 1 : 0);
}

void frmDisplay::setTabOrders()
{
    QWidgetList order;
    for (const Cell &cell : cells())
        order += this->*cell.field;
    order += {RichTextBox2,      RichTextBox1, m_navigator->first, m_navigator->previous, m_navigator->next,
              m_navigator->last, Slider1};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
    tabToButtonsLast(this);
}

void frmDisplay::resizeEvent(QResizeEvent *event)
{
    DisplayWindow::resizeEvent(event);
    arrangeFields();
}

QSize frmDisplay::sizeHint() const
{
    return {640, 480};
}

void frmDisplay::setHints()
{
    const auto hint = [this](QWidget *widget, std::function<QString()> text) {
        onMouseOver(widget, [this, text = std::move(text)] { Label1->setText(text()); });
    };
    const auto fixed = [](const char16_t *text) {
        return [text = QString::fromUtf16(text)] { return text; };
    };
    hint(Text1, [this] { return m_global.ClientCaption; });
    hint(Text2, [this] { return m_global.EmployeeCaption; });
    hint(Text3, [this] { return m_global.ProjectCaption; });
    hint(Text4, fixed(u"  Hourly Rate  "));
    hint(Text5, fixed(u"  Summary  "));
    hint(Text7, fixed(u"  Beginning Time  "));
    hint(Text8, fixed(u"  Duration (computed to nearest tenth of an hour) "));
    hint(Text9, fixed(u"  Ending Time  "));
    for (NotesEdit *box : {RichTextBox1, RichTextBox2})
        hint(box, fixed(u"  Use [View] to toggle between text and graphics modes  "));
    hint(Slider1, [this] {
        const int count = Adodc1.isOpen() ? Adodc1.Recordset().RecordCount() : 0;
        return u"  Use this slider to navigate through "_s + QString::number(count) +
               u" Vardelin records  "_s;
    });
    for (QWidget *plain : {static_cast<QWidget *>(Text6), static_cast<QWidget *>(m_navigator)})
        onMouseOver(plain, [] {}); // neither a hint nor the free area
    onMouseOver(this, [this] { showFile(); });
    onMouseOver(Toolbar1, [this] { showFile(); });
}

void frmDisplay::setFonts()
{
    const FontSetting &setting = m_global.DefaultDisplayFont;
    const QFont font = formFont(setting.name, setting.size);
    QWidget *const widgets[]{Text1,        Text2, Text3, Text4, Text5,      RichTextBox1,
                             RichTextBox2, Text7, Text8, Text9, m_navigator};
    for (QWidget *widget : widgets) // Text6 keeps the design font
        widget->setFont(font);
    for (NotesEdit *box : {RichTextBox1, RichTextBox2})
        box->document()->setDefaultFont(font);
}

} // namespace vardelin
