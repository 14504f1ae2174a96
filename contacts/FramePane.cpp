#include "contacts/FramePane.h"

#include "platform/base/Twips.h"
#include "platform/rich/Rtf.h"
#include "platform/ui/DatePicker.h"
#include "platform/ui/MaskEdBox.h"
#include "platform/ui/WordWrap.h"

#include <QPlainTextEdit>
#include <QStyle>
#include <QTextDocument>
#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// In twips.
constexpr int kRowHeight = 615;
constexpr int kGap = 50;
constexpr int kTextLeft = 100;
constexpr int kTextTop = 200;
constexpr int kTextHeight = 300;
constexpr int kFourInRow = 4;

// Stored line ends, whatever they are, stay as they are unless the text is edited; then they are CR LF.
BoundField boundMemo(QPlainTextEdit *edit, const QString &column)
{
    const auto stored = std::make_shared<QString>();
    return {column,
            [edit, stored](const QString &text) {
                *stored = text;
                showPlainText(*edit, text);
                edit->document()->setModified(false);
            },
            [edit, stored] { return edit->document()->isModified() ? wordsOf(*edit->document()) : *stored; }};
}

BoundField boundLine(QLineEdit *edit, const QString &column)
{
    return {column,
            [edit](const QString &text) {
                edit->setText(text);
                edit->setCursorPosition(0);
            },
            [edit] { return edit->text(); }};
}

} // namespace

std::vector<QRect> frameRects(const std::vector<int> &framesInRow, QSize room, int rowHeight)
{
    const int gap = toPixels(kGap);
    std::vector<QRect> rects;
    int top = 0;
    for (std::size_t row = 0; row < framesInRow.size(); ++row) {
        const bool last = row + 1 == framesInRow.size();
        const int height = last ? std::max(rowHeight, room.height() - top - gap) : rowHeight;
        const int count = framesInRow[row];
        const int between = count < kFourInRow ? gap : 0;
        const int width = (room.width() - 2 * gap - (count - 1) * between) / count;
        for (int i = 0; i < count; ++i)
            rects.emplace_back(gap + i * (width + between), top, width, height);
        top += height;
    }
    return rects;
}

FramePane::FramePane(std::vector<FieldDesign> fields, Adodc &control, QWidget *parent)
    : QWidget(parent), m_designs(std::move(fields))
{
    for (const FieldDesign &design : m_designs) {
        auto *frame = new QGroupBox(QString(design.caption).replace(u'&', u"&&"_s), this);
        frame->setObjectName(design.frame);
        QWidget *field = makeField(design, control);
        field->setParent(frame);
        QFont plain; // of it just this counts: the caption's may be narrowed
        plain.setStretch(QFont::Unstretched);
        field->setFont(plain);
        field->setObjectName(design.name);
        field->setAccessibleName(design.caption);
        frame->hide();
        m_frames.push_back(frame);
        m_fields.push_back(field);
    }
}

QWidget *FramePane::makeField(const FieldDesign &design, Adodc &control)
{
    switch (design.kind) {
    case FieldDesign::Kind::Line: {
        auto *line = m_line = new QLineEdit;
        control.bind(boundLine(line, design.column));
        return line;
    }
    case FieldDesign::Kind::Mask: {
        auto *mask = new MaskEdBox(design.format);
        control.bind({design.column, [mask](const QString &text) { mask->setText(text); },
                      [mask] { return mask->Text(); }});
        return mask;
    }
    case FieldDesign::Kind::Date: {
        auto *date = new DatePicker(design.format, DatePicker::Kind::CheckBox);
        date->setAccessibleCaption(design.caption);
        control.bind(date->boundTo(design.column));
        return date;
    }
    case FieldDesign::Kind::Memo:
        break;
    }
    auto *memo = new QPlainTextEdit;
    memo->setTabChangesFocus(true);
    // Lines are broken to fit. Filled on a hidden tab, the edit keeps a range for lines that never were so
    // long.
    memo->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    memo->document()->setDocumentMargin(2); // else a frame of one line would show a scroll bar
    control.bind(boundMemo(memo, design.column));
    return memo;
}

void FramePane::showTab(int tab)
{
    m_tab = tab;
    updateGeometry();
    setMinimumHeight(minimumSizeHint().height());
    for (std::size_t i = 0; i < m_designs.size(); ++i)
        m_frames[i]->setVisible(m_designs[i].tab == tab);
    layOut();
}

QWidget *FramePane::field(const QString &name) const
{
    const auto design = std::ranges::find(m_designs, name, &FieldDesign::name);
    return m_fields.at(static_cast<std::size_t>(design - m_designs.begin()));
}

void FramePane::setCaption(const QString &frame, const QString &caption)
{
    const auto design = std::ranges::find(m_designs, frame, &FieldDesign::frame);
    QGroupBox *box = m_frames.at(static_cast<std::size_t>(design - m_designs.begin()));
    box->setTitle(QString(caption).replace(u'&', u"&&"_s));
    fitCaption(*box);
}

DatePicker *FramePane::date(const QString &name) const
{
    return qobject_cast<DatePicker *>(field(name));
}

std::vector<int> FramePane::framesInRow(int tab) const
{
    std::vector<int> counts;
    for (const FieldDesign &design : m_designs) {
        if (design.tab != tab)
            continue;
        counts.resize(std::max(counts.size(), static_cast<std::size_t>(design.row) + 1));
        ++counts[static_cast<std::size_t>(design.row)];
    }
    return counts;
}

// The design's heights, or what the user's font needs.
int FramePane::captionHeight() const
{
    constexpr int kAround = 2; // that the style leaves above and below the letters
    return std::max(toPixels(kTextTop), fontMetrics().height() + kAround);
}

int FramePane::lineHeight() const
{
    return std::max(toPixels(kTextHeight), m_line->sizeHint().height());
}

int FramePane::rowHeight() const
{
    return std::max(toPixels(kRowHeight), captionHeight() + lineHeight() + toPixels(kGap));
}

// A caption wider than its frame is set narrower, down to what can be read.
void FramePane::fitCaption(QGroupBox &frame) const
{
    constexpr int kNarrowest = 75; // per cent
    const int wanted = fontMetrics().size(Qt::TextShowMnemonic, frame.title()).width();
    QFont font;
    font.setStretch(std::clamp(100 * frame.width() / std::max(wanted, 1), kNarrowest, 100));
    frame.setFont(font);
}

void FramePane::layOut()
{
    const std::vector<QRect> rects = frameRects(framesInRow(m_tab), size(), rowHeight());
    const int left = toPixels(kTextLeft);
    const int top = captionHeight();
    const int below = toPixels(kRowHeight - kTextTop - kTextHeight);
    std::size_t next = 0;
    for (std::size_t i = 0; i < m_designs.size(); ++i) {
        if (m_designs[i].tab != m_tab)
            continue;
        const QRect &rect = rects[next++];
        m_frames[i]->setGeometry(rect);
        fitCaption(*m_frames[i]);
        const bool memo = m_designs[i].kind == FieldDesign::Kind::Memo;
        const int height = memo ? std::max(lineHeight(), rect.height() - top - below) : lineHeight();
        m_fields[i]->setGeometry(left, top, rect.width() - 2 * left, height);
    }
}

QSize FramePane::minimumSizeHint() const
{
    const auto rows = static_cast<int>(framesInRow(m_tab).size());
    const int more = 2 * fontMetrics().lineSpacing(); // the last frame is read, not only seen
    return {fontMetrics().horizontalAdvance(u'0') * 52, rows * rowHeight() + more};
}

QSize FramePane::sizeHint() const
{
    return {std::max(toPixels(9000), minimumSizeHint().width() * 5 / 4), 9 * rowHeight()};
}

void FramePane::resizeEvent(QResizeEvent *)
{
    layOut();
}

} // namespace vardelin
