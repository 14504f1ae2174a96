#include "benchmarks/Children.h"

#include "app/Program.h"
#include "benchmarks/Figures.h"
#include "benchmarks/Generate.h"
#include "benchmarks/Painting.h"
#include "display/frmDisplay.h"
#include "search/Routines.h"
#include "search/SearchSql.h"

#include <QDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QTimer>
#include <cstdio>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

constexpr int kOpenings = 11;
constexpr int kSteps = 101;

template <class Window>
PaintWatch::Kind firstOf()
{
    return [](QWidget *painted) { return qobject_cast<Window *>(painted) != nullptr; };
}

void tell(const char *name, double seconds)
{
    std::printf("%s %.6f\n", name, seconds);
}

void tellPainted()
{
    std::printf("painted %lld\n", static_cast<long long>(nanosecondsNow()));
}

frmDisplay &firstDisplay(Program &program)
{
    return static_cast<frmDisplay &>(*program.global().DisplayWindows.at(0));
}

void closeAndForget(QPointer<DisplayWindow> window)
{
    window->parentWidget()->close();
    while (window) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

double openingOfDisplay(Program &program)
{
    const std::int64_t start = nanosecondsNow();
    DisplayWindow *window = program.global().openers.NewDisplayWindow();
    waitForPaint(window);
    const double seconds = secondsSince(start);
    closeAndForget(window);
    return seconds;
}

// From the moment when the word has been typed, from the first Display window.
double searchForWord(Program &program, const QString &word)
{
    std::int64_t start = 0;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, &answer, [&] {
        auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!box)
            return;
        answer.stop();
        box->findChild<QLineEdit *>()->setText(word);
        start = nanosecondsNow();
        box->accept();
    });
    answer.start(1);
    Global &global = program.global();
    global.CurrentDisplayTag = u"1"_s;
    SearchRoutine(global, SearchFor::LogText, TimeFrame::All, true);
    DisplayWindow *window = global.DisplayWindows.back();
    waitForPaint(window);
    const double seconds = secondsSince(start);
    if (window->recordCount() == 0)
        throw std::runtime_error("the search found nothing");
    closeAndForget(window);
    return seconds;
}

double searches(Program &program, const char16_t *word)
{
    std::vector<double> times;
    for (int i = 0; i < kOpenings; ++i)
        times.push_back(searchForWord(program, QString::fromUtf16(word)));
    return median(times);
}

double step(frmDisplay &window, bool (Adodc::*move)())
{
    QWidget *notes = window.findChild<QTextEdit *>(u"RichTextBox2"_s)->viewport();
    return secondsOf([&] {
        (window.control().*move)();
        waitForPaint(notes);
    });
}

double steps(frmDisplay &window, bool (Adodc::*move)())
{
    std::vector<double> times;
    for (int i = 0; i < kSteps; ++i)
        times.push_back(step(window, move));
    return median(times);
}

// Half of a small screen, where the program starts, doesn't show the notes.
void showWhole(Program &program, frmDisplay &window)
{
    program.mainWindow().resize(1200, 900);
    QCoreApplication::processEvents();
    program.mainWindow().area().setActiveSubWindow(qobject_cast<QMdiSubWindow *>(window.parentWidget()));
    window.parentWidget()->setGeometry(0, 0, 900, 700);
    QCoreApplication::processEvents();
}

} // namespace

int startProgram(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    Application application(argc, argv);
    Program program(application);
    PaintWatch watch({firstOf<DisplayWindow>(), firstOf<EntryWindow>()});
    program.startLater();
    watch.wait();
    tellPainted();
    std::printf("records %d\n", firstDisplay(program).control().Recordset().RecordCount());
    return 0;
}

int startBareWindow(int argc, char **argv, bool withMenu)
{
    QApplication application(argc, argv);
    if (QApplication::style()->name() == "windows"_L1)
        QApplication::setStyle(u"fusion"_s);
    QMainWindow window;
    auto *area = new QMdiArea(&window);
    window.setCentralWidget(area);
    if (withMenu)
        window.menuBar()->addMenu(u"&File"_s);
    window.resize(QGuiApplication::primaryScreen()->availableSize() / 2);
    PaintWatch watch({[area](QWidget *painted) { return painted == area->viewport(); }});
    window.show();
    watch.wait();
    tellPainted();
    return 0;
}

int useDisplay(int argc, char **argv)
{
    Application application(argc, argv);
    Program program(application);
    PaintWatch watch({firstOf<DisplayWindow>(), firstOf<EntryWindow>()});
    program.startLater();
    watch.wait();

    std::vector<double> openings;
    for (int i = 0; i < kOpenings; ++i)
        openings.push_back(openingOfDisplay(program));
    tell("open_display", median(openings));
    tell("search_rare_word", searches(program, kRareWord));
    tell("search_common_word", searches(program, kCommonWord));

    frmDisplay &window = firstDisplay(program);
    showWhole(program, window);
    tell("first_record", step(window, &Adodc::MoveFirst));
    tell("next_record", steps(window, &Adodc::MoveNext));
    tell("previous_record", steps(window, &Adodc::MovePrevious));
    return 0;
}

} // namespace vardelin::bench
