// The controls of the ledger window: made, named, bound, placed.

#include "billing/frmPaymentsDisbursements.h"
#include "platform/base/Format.h"
#include "platform/base/Twips.h"
#include "platform/ui/MenuTable.h"
#include "platform/ui/SharedKeys.h"
#include "platform/ui/WordWrap.h"
#include "shell/state/Global.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QMenuBar>
#include <QScrollArea>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kDateColumns = 2; // fields of a page stand two in a row

template <class Control>
Control *named(const QString &name)
{
    auto *control = new Control;
    control->setObjectName(name);
    return control;
}

template <class Box>
Box *readOnly(const QString &name)
{
    auto *box = named<Box>(name);
    box->setReadOnly(true);
    return box;
}

QPlainTextEdit *descriptionBox(const QString &name)
{
    auto *box = named<QPlainTextEdit>(name);
    box->setTabChangesFocus(true);
    return box;
}

DatePicker *picker(const QString &name, DatePicker::Kind kind)
{
    auto *control = new DatePicker(u"M/d/yyy"_s, kind);
    control->setObjectName(name);
    return control;
}

// The texts of a bound box and back to it only as shown: a saved record isn't edited in this window.
BoundField shown(const QString &column, QLineEdit *box)
{
    return {column, [box](const QString &text) { box->setText(text); }, {}};
}

QString money(const Value &amount)
{
    return format(amount, u"\"$\"#,##0.00");
}

} // namespace

void frmPaymentsDisbursements::makeMenu(QMenuBar *bar)
{
    bar->addActions(makeBar(this,
                            {{u"mnuReturn"_s, u"&Return"_s, {}, [this] { close(); }},
                             {u"mnuSave"_s, u"&Save record"_s, {}, [this] { mnuSave_Click(); }},
                             {u"mnuDelete"_s, u"&Delete record"_s, {}, [this] { mnuDelete_Click(); }},
                             {u"mnuSearch"_s, u"&Search"_s, {}, [this] { mnuSearch_Click(); }},
                             {u"mnuContinue"_s, u"&Continue"_s, {}, [this] { mnuContinue_Click(); }},
                             {u"mnuReport"_s, u"Re&port"_s, {}, [this] { mnuReport_Click(); }}},
                            m_global.services.errors));
    firstTakesSharedKeys(bar); // Save record and Search, of which mostly only one is on
}

void frmPaymentsDisbursements::makeFields()
{
    Combo1[0] = named<FreeCombo>(u"Combo1(0)"_s);
    Combo1[1] = named<FreeCombo>(u"Combo1(1)"_s);
    Combo2 = named<FreeCombo>(u"Combo2"_s);
    Text1_0 = descriptionBox(u"Text1(0)"_s);
    Text1_1 = named<QLineEdit>(u"Text1(1)"_s);
    Text2_1 = readOnly<QLineEdit>(u"Text2(1)"_s);
    Text2_2 = descriptionBox(u"Text2(2)"_s);
    Text2_2->setReadOnly(true);
    Text2_3 = readOnly<QLineEdit>(u"Text2(3)"_s);
    Text3 = named<QLineEdit>(u"Text3"_s);
    Text4_1 = readOnly<QLineEdit>(u"Text4(1)"_s);
    Text4_2 = readOnly<QLineEdit>(u"Text4(2)"_s);
    Text5 = named<QLineEdit>(u"Text5"_s);
    connect(Text5, &QLineEdit::returnPressed, findChild<QAction *>(u"mnuContinue"_s), &QAction::trigger);
    DTPicker1 = picker(u"DTPicker1"_s, DatePicker::Kind::CheckBox);
    DTPicker2 = picker(u"DTPicker2"_s, DatePicker::Kind::AlwaysADate);
    DTPicker3 = picker(u"DTPicker3"_s, DatePicker::Kind::CheckBox);
    DTPicker4 = picker(u"DTPicker4"_s, DatePicker::Kind::AlwaysADate);
    DTPicker5 = picker(u"DTPicker5"_s, DatePicker::Kind::AlwaysADate);
    DTPicker6 = picker(u"DTPicker6"_s, DatePicker::Kind::AlwaysADate);
    DTPicker2->setReadOnly(true);
    DTPicker4->setReadOnly(true);
    const auto option = [](const QString &name, const QString &caption) {
        auto *button = named<QRadioButton>(name);
        button->setText(caption);
        return button;
    };
    Option1[0] = option(u"Option1(0)"_s, u"Fee"_s);
    Option1[1] = option(u"Option1(1)"_s, u"Disbursement"_s);
    Option2[0] = option(u"Option2(0)"_s, u"Search within disbursement records"_s);
    Option2[1] = option(u"Option2(1)"_s, u"Search within payment records"_s);
}

void frmPaymentsDisbursements::makeWalks()
{
    struct Names
    {
        Ledger ledger;
        QString control, caption, scroll, hidden, box;
    };
    const Names walks[]{
        {Ledger::Disbursements, u"Adodc1"_s, u"Disbursements navigator"_s, u"HScroll1"_s, u"Text6"_s,
         u"Text2(0)"_s},
        {Ledger::Payments, u"Adodc2"_s, u"Payments navigator"_s, u"HScroll2"_s, u"Text7"_s, u"Text4(0)"_s}};
    for (const Names &names : walks) {
        Walk &walk = this->walk(names.ledger);
        walk.navigator =
            new RecordNavigator(walk.control, m_global.services.dialogs, m_global.services.errors);
        walk.navigator->setObjectName(names.control);
        walk.navigator->setCaption(names.caption);
        walk.scroll = new RecordScrollBar(100);
        walk.scroll->setObjectName(names.scroll);
        walk.scroll->setAccessibleName(names.caption + u", position"_s);
        walk.scroll->Change = [this, ledger = names.ledger] {
            m_global.services.errors.run([&] { HScroll_Change(ledger); });
        };
        walk.clientBox = readOnly<QLineEdit>(names.box);
        walk.firstName = named<QLineEdit>(names.hidden + u"(0)"_s);
        walk.lastName = named<QLineEdit>(names.hidden + u"(1)"_s);
        for (QLineEdit *hidden : {walk.firstName, walk.lastName}) {
            hidden->setParent(this);
            hidden->hide();
        }
        walk.control.MoveComplete = [this, ledger = names.ledger](MoveReason reason) {
            MoveComplete(ledger, reason);
        };
    }
}

// A frame's number in its array is its turn.
QWidget *frmPaymentsDisbursements::frame(int array, const QString &caption, QWidget *control)
{
    Page &page = m_pages[static_cast<std::size_t>(array)];
    auto *box = new QGroupBox(caption);
    box->setObjectName(u"Frame%1(%2)"_s.arg(array).arg(page.frames.size()));
    auto *inside = new QVBoxLayout(box);
    inside->setContentsMargins(8, 6, 8, 8);
    inside->addWidget(control);
    control->setAccessibleName(caption);
    if (auto *combo = qobject_cast<FreeCombo *>(control))
        combo->setAccessibleCaption(caption);
    if (auto *date = qobject_cast<DatePicker *>(control))
        date->setAccessibleCaption(caption);
    page.frames.push_back(box);
    return box;
}

namespace {

// The first is chosen. Tab stops at the chosen one alone; the arrow keys choose.
QWidget *optionPair(QRadioButton *const (&buttons)[2])
{
    auto *pair = new QWidget;
    auto *row = new QHBoxLayout(pair);
    row->setContentsMargins(0, 0, 0, 0);
    for (QRadioButton *button : buttons) {
        row->addWidget(button);
        button->setFocusPolicy(Qt::ClickFocus);
        QObject::connect(button, &QRadioButton::toggled, button, [button](bool chosen) {
            button->setFocusPolicy(chosen ? Qt::StrongFocus : Qt::ClickFocus);
        });
    }
    row->addStretch(1);
    buttons[0]->setChecked(true);
    return pair;
}

} // namespace

void frmPaymentsDisbursements::layOutPages()
{
    struct Cell
    {
        int array;
        QString caption;
        QWidget *control;
        int row, column, span;
    };
    auto *range = new QWidget;
    auto *dates = new QHBoxLayout(range);
    dates->setContentsMargins(0, 0, 0, 0);
    dates->addWidget(DTPicker5);
    dates->addWidget(DTPicker6);
    const Cell cells[]{
        {1, u"Client"_s, Combo1[0], 0, 0, 1},
        {1, u"Vendor"_s, Combo1[1], 0, 1, 1},
        {1, u"Description of disbursement"_s, Text1_0, 1, 0, 2},
        {1, u"Amount of disbursement"_s, Text1_1, 2, 0, 1},
        {1, u"Date of disbursement"_s, DTPicker1, 2, 1, 1},
        {2, u"Client"_s, m_disbursements.clientBox, 0, 0, 1},
        {2, u"Vendor"_s, Text2_1, 0, 1, 1},
        {2, u"Description of disbursement"_s, Text2_2, 1, 0, 2},
        {2, u"Amount of disbursement"_s, Text2_3, 2, 0, 1},
        {2, u"Date of disbursement"_s, DTPicker2, 2, 1, 1},
        {3, u"Client"_s, Combo2, 0, 0, 2},
        {3, u"Description of payment"_s, optionPair(Option1), 1, 0, 2},
        {3, u"Amount of payment"_s, Text3, 2, 0, 1},
        {3, u"Date of payment"_s, DTPicker3, 2, 1, 1},
        {4, u"Client"_s, m_payments.clientBox, 0, 0, 2},
        {4, u"Description of payment"_s, Text4_1, 1, 0, 2},
        {4, u"Amount of payment"_s, Text4_2, 2, 0, 1},
        {4, u"Date of payment"_s, DTPicker4, 2, 1, 1},
        {5, u"Select type of search"_s, optionPair(Option2), 0, 0, 2},
        {5, u"Enter search term, vendor name, client name or amount"_s, Text5, 1, 0, 2},
        {5, u"Select beginning and ending dates for search time frame"_s, range, 2, 0, 2},
    };
    std::array<QGridLayout *, kSearchFrames + 1> grids{};
    for (int array = 1; array <= kSearchFrames; ++array) {
        auto *area = new QWidget;
        auto *grid = new QGridLayout(area);
        grid->setContentsMargins(0, 0, 0, 0);
        grid->setSpacing(toPixels(100));
        for (int column = 0; column < kDateColumns; ++column)
            grid->setColumnStretch(column, 1);
        m_pages[static_cast<std::size_t>(array)].area = area;
        grids[static_cast<std::size_t>(array)] = grid;
    }
    for (const Cell &cell : cells)
        grids[static_cast<std::size_t>(cell.array)]->addWidget(frame(cell.array, cell.caption, cell.control),
                                                               cell.row, cell.column, 1, cell.span);
    DTPicker5->setAccessibleCaption(u"Beginning date"_s);
    DTPicker6->setAccessibleCaption(u"Ending date"_s);
}

void frmPaymentsDisbursements::layOut(QMenuBar *bar)
{
    TabStrip1 = new TabStrip(
        {u"Enter disbursement"_s, u"Display disbursements"_s, u"Enter payment"_s, u"Display payments"_s});
    TabStrip1->setObjectName(u"TabStrip1"_s);
    TabStrip1->setAccessibleName(windowTitle());
    TabStrip1->Click = [this](int tab) { m_global.services.errors.run([&] { TabStrip1_Click(tab); }); };
    layOutPages();

    // Frames of two arrays may be on view at a time: below each other, and never one over the other.
    auto *body = new QWidget;
    auto *pages = new QVBoxLayout(body);
    pages->setContentsMargins(toPixels(300), toPixels(100), toPixels(300), toPixels(100));
    pages->setSpacing(toPixels(100));
    for (int array = 1; array <= kSearchFrames; ++array)
        pages->addWidget(m_pages[static_cast<std::size_t>(array)].area, array <= 2 ? 1 : 0);
    pages->addStretch();
    auto *scrolled = new QScrollArea;
    scrolled->setFrameShape(QFrame::NoFrame);
    scrolled->setWidgetResizable(true);
    scrolled->setWidget(body);
    scrolled->setFocusPolicy(Qt::NoFocus);

    auto *walks = new QVBoxLayout;
    walks->setContentsMargins(toPixels(300), 0, toPixels(300), toPixels(100));
    walks->setSpacing(toPixels(100));
    for (const Walk *walk : {&m_disbursements, &m_payments}) {
        walks->addWidget(walk->scroll);
        walks->addWidget(walk->navigator);
    }
    auto *all = new QVBoxLayout(this);
    all->setMenuBar(bar);
    all->setContentsMargins(0, toPixels(100), 0, 0);
    all->setSpacing(toPixels(100));
    all->addWidget(TabStrip1);
    all->addWidget(scrolled, 1);
    all->addLayout(walks);
    resize(toPixels(9600), toPixels(6600));
}

void frmPaymentsDisbursements::bindFields()
{
    for (const Ledger ledger : {Ledger::Disbursements, Ledger::Payments}) {
        Walk &walk = this->walk(ledger);
        const bool disbursements = ledger == Ledger::Disbursements;
        const QString prefix = disbursements ? u"Disbursement "_s : u"Payment "_s;
        const auto bindName = [this, ledger, &walk](const QString &column, QLineEdit *box) {
            walk.control.bind({column,
                               [this, ledger, box](const QString &text) {
                                   box->setText(text);
                                   showClient(ledger);
                               },
                               {}});
        };
        bindName(prefix + u"Client First Name"_s, walk.firstName);
        bindName(prefix + u"Client Last Name"_s, walk.lastName);
        walk.control.setColumnReader(prefix + u"Amount"_s, money);
        walk.control.bind(shown(prefix + u"Amount"_s, disbursements ? Text2_3 : Text4_2));
        walk.control.bind((disbursements ? DTPicker2 : DTPicker4)->boundTo(prefix + u"Date"_s));
    }
    m_disbursements.control.bind(shown(u"Disbursement Payee"_s, Text2_1));
    m_disbursements.control.bind(
        {u"Disbursement Description"_s, [this](const QString &text) { showPlainText(*Text2_2, text); }, {}});
    m_payments.control.bind(shown(u"Payment Description"_s, Text4_1));
}

} // namespace vardelin
