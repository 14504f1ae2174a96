#pragma once
// A scroll bar that moves through the records of a data control by proportion.

#include <QScrollBar>
#include <functional>

namespace vardelin {

class RecordScrollBar : public QScrollBar
{
    Q_OBJECT
public:
    // From 0 to max; 32767 is what such a bar has by itself.
    explicit RecordScrollBar(int max = 32767, QWidget *parent = nullptr);
    // Where the bar stands for a record, from 1, of count; doesn't call Change. Its arrows and arrow keys
    // move by one record from then on, the page keys by ten.
    void showPlace(int position, int count);
    void setValue(int value);     // doesn't call Change
    std::function<void()> Change; // the user moved it; while its handle is dragged, at the end

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void step(int action);
    int valueOf(int position) const;
    int m_count = 0;
};

} // namespace vardelin
