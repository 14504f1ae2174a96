#pragma once
// The Display window: one record of a selection of logs at a time, with a navigator and a slider over all of
// them.

#include "display/FeeTip.h"
#include "platform/data/Adodc.h"
#include "platform/data/RecordPlace.h"
#include "platform/ui/Controls.h"
#include "platform/ui/NotesEdit.h"
#include "platform/ui/RecordNavigator.h"
#include "shell/state/Windows.h"

#include <QLineEdit>
#include <QSlider>
#include <QStackedWidget>
#include <optional>

class QGridLayout;
class QProgressBar;
class QScrollArea;

namespace vardelin {

struct Global;

// A slider that tells when the mouse button is released on it, wherever it was pressed.
class ReleaseSlider : public QSlider
{
    Q_OBJECT
public:
    using QSlider::QSlider;
    std::function<void()> mouseReleased;
    std::function<void(int direction)> keyMoved; // by the arrow and page keys: 1 up, -1 down

protected:
    // The left button works above and below the thin groove, too; another one isn't taken, as the wheel
    // isn't.
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override; // not taken: it would leave the slider beside its record
};

// A one-line field that tells when it loses the focus to another control.
class FocusField : public QLineEdit
{
    Q_OBJECT
public:
    using QLineEdit::QLineEdit;
    std::function<void()> lostFocus;

protected:
    void focusOutEvent(QFocusEvent *event) override;
};

class frmDisplay : public DisplayWindow
{
    Q_OBJECT
public:
    explicit frmDisplay(Global &global, QWidget *parent = nullptr);
    ~frmDisplay() override;

    void setFile(const QString &path) override;
    QString file() const override;
    void setSelection(const QString &statement, const QString &whereFragment) override;
    QString whereFragment() const override;
    void showSelection(const QString &statement) override;
    int recordCount() override;
    void showLast() override;
    QString client() const override;
    void Form_Activate() override;

    QSize sizeHint() const override;

    Adodc &control() override { return Adodc1; }
    void showProgress(int percent) override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    // frmDisplayLayout.cpp
    struct Cell;
    static const std::vector<Cell> &cells();
    void makeFields();
    void makeNotes();
    void makeNavigator();
    void makeLabels();
    void layOut();
    void arrangeFields();
    void setTabOrders();
    void makeMenus();
    void makeToolbar();
    void bindFields();
    void setHints();
    void setFonts();

    // frmDisplay.cpp
    void Form_Load();
    void Adodc1_MoveComplete(MoveReason reason);
    void Slider1_MouseUp();
    void Slider1_KeyMoved(int direction);
    void goTo(int position);
    void Text4_LostFocus();
    void mnuText_Click();
    void mnuGraphics_Click();
    void showView(bool graphics);
    void showFile();
    void showGraphic();
    Place place();

    // frmDisplayCommands.cpp
    void changeRecord(const std::function<void()> &change);
    void mnuSaveChanges_Click();
    void mnuDeleteLog_Click();
    void mnuReport_Click();
    void mnuSearch_Click();
    void mnuDEnter_Click();
    void mnuPrintVardelin_Click();
    void printVardelin();
    void printRich(const QTextDocument &text);
    void Back_Click();
    void Forward_Click();
    void useThisWindow();
    std::function<void()> fileCommand(void (*command)(Global &), const QString &lastWord = {});

    Global &m_global;
    Adodc Adodc1;
    FocusField *Text1, *Text2, *Text3, *Text4, *Text5, *Text6, *Text7, *Text8, *Text9;
    NotesEdit *RichTextBox2; // text view: words alone
    NotesEdit *RichTextBox1; // graphics view
    QStackedWidget *m_views;
    QScrollArea *m_body = nullptr;    // fields and notes, which a small window can't hold at once
    QGridLayout *m_grid = nullptr;    // the fields, each below its caption
    std::vector<QLabel *> m_captions; // of the fields, in their order
    std::optional<bool> m_wide;       // as the fields stand
    RecordNavigator *m_navigator = nullptr;
    ReleaseSlider *Slider1;
    QToolBar *Toolbar1;
    QLabel *Label1, *Label2, *SQLWhere;
    QProgressBar *m_progress = nullptr;
    // Vardelin and VardeGraphic of the record as stored: what the boxes give back unless they were edited.
    QString m_text;
    QString m_graphic;
    bool m_graphicShown = false; // rich text is made only while it can be seen
};

} // namespace vardelin
