#pragma once
// When something has been painted.

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <vector>

namespace vardelin::bench {

// Watches every widget of the program for the first paint of each kind that is asked for.
class PaintWatch final : public QObject
{
public:
    using Kind = std::function<bool(QWidget *)>;

    explicit PaintWatch(std::vector<Kind> kinds);
    bool done() const { return m_waiting.empty(); }
    // Turns the event loop until all kinds were painted and what was painted has been handed to the screen;
    // std::runtime_error after half a minute.
    void wait();

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    std::vector<Kind> m_waiting;
};

// Until `widget` is painted the next time.
void waitForPaint(QWidget *widget);

} // namespace vardelin::bench
