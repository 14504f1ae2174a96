#pragma once
// Display windows on a real file of logs.

#include "display/frmDisplay.h"
#include "tests/support/Judges.h"
#include "tests/support/OfficeProgram.h"

#include <QApplication>

namespace vardelin::testing_support {

struct DisplayWindowsTest : testing::Test, OfficeProgram
{
    // 16 October 2026, 9 in the morning, and a day later for each number: log n has a duration of n tenths.
    void addLog(int number)
    {
        const QString text = QString::number(number);
        const DateSerial begin{46311.375 + number - 1};
        add(QStringLiteral("Vardelins"), {{QStringLiteral("Client"), QStringLiteral("Archer, Ann ") + text},
                                          {QStringLiteral("Employee"), QStringLiteral("Baxter, Bo")},
                                          {QStringLiteral("Project"), QStringLiteral("Estate")},
                                          {QStringLiteral("Rate"), QStringLiteral("100")},
                                          {QStringLiteral("Vardelin"), QStringLiteral("Notes ") + text},
                                          {QStringLiteral("VardeGraphic"), rtf(number)},
                                          {QStringLiteral("Log Summary"), QStringLiteral("Call")},
                                          {QStringLiteral("Beginning Time"), begin},
                                          {QStringLiteral("Ending Time"), DateSerial{begin.days + 0.25}},
                                          {QStringLiteral("Duration"), static_cast<float>(number) / 10},
                                          {QStringLiteral("Fee"), Currency{100000LL * number}}});
    }
    void addLogs(int count)
    {
        for (int number = 1; number <= count; ++number)
            addLog(number);
    }
    // As another program might write it: words that we don't know, and line ends where we put none.
    static QString rtf(int number)
    {
        return QStringLiteral(
                   "{\\rtf1\\ansi\\deff0 {\\fonttbl{\\f0 Arial;}}\r\n\\strangeword7 Rich {\\b notes} "
                   "%1\\par\r\n}\r\n")
            .arg(number);
    }

    std::unique_ptr<frmDisplay> open()
    {
        auto window = std::make_unique<frmDisplay>(global);
        window->Tag = QString::number(++m_opened);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        return window;
    }
    static QLineEdit *field(const QWidget *window, int number)
    {
        return control<QLineEdit>(window, QStringLiteral("Text%1").arg(number));
    }
    static QStringList fields(const QWidget *window)
    {
        QStringList texts;
        for (int number = 1; number <= 9; ++number)
            texts += field(window, number)->text();
        return texts;
    }
    static NotesEdit *notes(const QWidget *window, int number)
    {
        return control<NotesEdit>(window, QStringLiteral("RichTextBox%1").arg(number));
    }
    static QString status(const QWidget *window)
    {
        return control<QLabel>(window, QStringLiteral("Label1"))->text();
    }
    static QSlider *slider(const QWidget *window)
    {
        return control<QSlider>(window, QStringLiteral("Slider1"));
    }
    static void releaseSlider(const QWidget *window, int value)
    {
        slider(window)->setValue(value);
        QTest::mouseRelease(slider(window), Qt::LeftButton);
    }
    // First, Previous, Next, Last
    static void press(const QWidget *window, const QString &button)
    {
        QTest::mouseClick(control<QToolButton>(window, button), Qt::LeftButton);
    }
    QString stored(const QString &name, int log)
    {
        return column(QStringLiteral("Vardelins"), name).value(log - 1);
    }

private:
    int m_opened = 0;
};

} // namespace vardelin::testing_support
