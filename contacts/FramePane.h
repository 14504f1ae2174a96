#pragma once
// The fields of a client window: captioned frames in rows, each with one field that is bound to a column.

#include "platform/data/Adodc.h"

#include <QGroupBox>
#include <QWidget>
#include <vector>

class QLineEdit;

namespace vardelin {

class DatePicker;

// One frame with its field. Frames of the same row stand side by side and are equally wide.
struct FieldDesign
{
    enum class Kind { Line, Memo, Mask, Date };
    int tab = 1;   // of the tab strip, from 1
    int row = 0;   // on its tab
    QString frame; // "Frame1(0)"
    QString caption;
    QString name; // of the field
    QString column;
    Kind kind = Kind::Line;
    QString format = {}; // of a mask or a date
};

// Where the frames of one tab stand. framesInRow: how many in each row, from the top. Rows are `rowHeight`
// high, the last one takes what is left. Two or three in a row have a gap between them; four take its room,
// too, as telephone numbers need it. In pixels.
std::vector<QRect> frameRects(const std::vector<int> &framesInRow, QSize room, int rowHeight);

class FramePane : public QWidget
{
    Q_OBJECT
public:
    FramePane(std::vector<FieldDesign> fields, Adodc &control, QWidget *parent = nullptr);
    void showTab(int tab); // 0: none
    QWidget *field(const QString &name) const;
    void setCaption(const QString &frame, const QString &caption);
    DatePicker *date(const QString &name) const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *makeField(const FieldDesign &design, Adodc &control);
    void layOut();
    void fitCaption(QGroupBox &frame) const;
    int captionHeight() const;
    int lineHeight() const;
    int rowHeight() const;
    std::vector<int> framesInRow(int tab) const;

    const std::vector<FieldDesign> m_designs;
    std::vector<QGroupBox *> m_frames; // one for each design
    std::vector<QWidget *> m_fields;
    QLineEdit *m_line = nullptr; // any of them: as high as a line of text needs
    int m_tab = 0;
};

} // namespace vardelin
