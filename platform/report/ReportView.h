#pragma once
// The pages of a report as on paper, one below the other: scrolling, zoom, selection, marked finds.

#include "platform/report/PagePainter.h"
#include "platform/report/PageText.h"

#include <QAbstractScrollArea>
#include <QCache>
#include <set>

namespace vardelin {

class ErrorFrame;

class ReportView : public QAbstractScrollArea
{
    Q_OBJECT
public:
    enum class Fit { None, Width, Page };

    ReportView(ErrorFrame &errors, QWidget *parent = nullptr);
    // The pages must outlive the view or its next setPages().
    void setPages(ReportPages &pages);
    void pagesFound(); // more of them are known, or all

    int currentPage() const; // the one in the middle of the view
    void showPage(int number);
    double zoom() const { return m_zoom; } // 1: a twip is a twip on a screen of 96 dots an inch
    void setZoom(double zoom);             // within kSmallestZoom and kLargestZoom; ends fitting
    Fit fit() const { return m_fit; }
    void setFit(Fit fit); // kept as the window changes
    static constexpr double kSmallestZoom = 0.1, kLargestZoom = 5;

    bool hasSelection() const { return m_anchor != m_end; }
    TextPlace selectionStart() const { return std::min(m_anchor, m_end); }
    TextPlace selectionEnd() const { return std::max(m_anchor, m_end); }
    void selectAll();
    void clearSelection();

    // Finds to mark; they outlive the view or the next call. current: the one to mark more and to bring into
    // view; -1: none.
    void setMatches(const std::vector<TextMatch> *matches, int current);

    std::function<void()> changed; // the page in view, the zoom or the selection

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Sheet // a page with its words in order
    {
        ReportPage page;
        std::vector<PageRow> rows;
        std::vector<const ReportItem *> lines;
    };
    Sheet &sheet(int number);
    double scale() const;             // pixels to the twip
    double slot() const;              // pixels from page to page
    QPointF corner(int number) const; // of a page in the view
    void applyFit();
    void updateRanges();
    void paintSheet(QPainter &painter, int number, const QRect &exposed);
    void paintMarks(QPainter &painter, const Sheet &shown);
    void mark(QPainter &painter, const ReportItem &item, int from, int to, const QColor &color) const;
    double offsetOf(const ReportItem &item, int characters) const; // twips
    TextPlace placeAt(const QPointF &position);
    void moveEnd(TextPlace to);
    TextPlace moved(TextPlace place, int key);
    void reveal(int page, double top, double bottom, double left, double right);
    void tellScreenReader();

    ErrorFrame &m_errors;
    ReportPages *m_pages = nullptr;
    QCache<int, Sheet> m_sheets;
    std::unique_ptr<PagePainter> m_painter;
    double m_zoom = 1;
    Fit m_fit = Fit::Width;
    TextPlace m_anchor, m_end;
    const std::vector<TextMatch> *m_matches = nullptr;
    int m_currentMatch = -1;
    int m_told = 0; // the page that was told to assistive technology
};

} // namespace vardelin
