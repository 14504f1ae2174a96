#include "platform/ui/NotesEdit.h"
#include "platform/ui/WordWrap.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QElapsedTimer>
#include <QMimeData>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QUrl>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

// Of two colours, so that a picture that is stretched or cut shows.
QImage picture(int width, int height, QColor left)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter(&image).fillRect(0, 0, width / 2, height, left);
    return image;
}

QByteArray encoded(const QImage &image, const char *kind)
{
    QBuffer buffer;
    image.save(&buffer, kind);
    return buffer.data();
}

void paste(NotesEdit &notes, QMimeData *data)
{
    QApplication::clipboard()->setMimeData(data);
    QTest::keyClick(&notes, Qt::Key_V, Qt::ControlModifier);
}

void pasteImage(NotesEdit &notes, const QImage &image)
{
    auto *data = new QMimeData;
    data->setImageData(image);
    paste(notes, data);
}

QList<QTextImageFormat> pictures(const NotesEdit &notes)
{
    QList<QTextImageFormat> found;
    for (QTextBlock block = notes.document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (it.fragment().charFormat().isImageFormat())
                found += it.fragment().charFormat().toImageFormat();
        }
    }
    return found;
}

QImage stored(const NotesEdit &notes, const QTextImageFormat &format)
{
    return notes.document()->resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
}

// What another window shows of the text.
void reload(NotesEdit &notes)
{
    const QString rtf = notes.TextRTF();
    notes.setTextRTF(u"something else"_s);
    notes.setTextRTF(rtf);
}

class NotesEditTest : public testing::Test
{
protected:
    NotesEditTest()
    {
        m_notes.resize(300, 200);
        m_notes.show();
        m_notes.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_notes));
        m_notes.setFocus();
    }
    NotesEdit m_notes;
};

TEST_F(NotesEditTest, pastedPicturesAreKeptWholeAndApart)
{
    QTest::keyClicks(&m_notes, u"one "_s);
    pasteImage(m_notes, picture(40, 20, Qt::red));
    QTest::keyClicks(&m_notes, u" two "_s);
    pasteImage(m_notes, picture(40, 20, Qt::blue));
    QTest::keyClicks(&m_notes, u" end"_s);
    for (const bool reloaded : {false, true}) {
        if (reloaded)
            reload(m_notes);
        const auto found = pictures(m_notes);
        ASSERT_EQ(found.size(), 2);
        EXPECT_EQ(stored(m_notes, found[0]).pixelColor(2, 2), QColor(Qt::red));
        EXPECT_EQ(stored(m_notes, found[1]).pixelColor(2, 2), QColor(Qt::blue));
        EXPECT_EQ(stored(m_notes, found[1]).size(), QSize(40, 20));
        EXPECT_EQ(m_notes.Text(), u"one  two  end"_s) << "pictures are no text";
    }
}

TEST_F(NotesEditTest, widePicturesAreShownWithinThePageAndStoredAsTheyWere)
{
    pasteImage(m_notes, picture(1600, 400, Qt::red));
    QTest::qWait(1);
    EXPECT_EQ(m_notes.horizontalScrollBar()->maximum(), 0);
    const QSizeF narrow = m_notes.document()->size();
    EXPECT_LT(narrow.height(), 110);
    m_notes.resize(600, 200);
    QTest::qWait(1);
    EXPECT_GT(m_notes.document()->size().height(), 1.5 * narrow.height()) << "it grows with the window";
    ASSERT_EQ(pictures(m_notes).size(), 1);
    EXPECT_EQ(pictures(m_notes)[0].width(), 1600);
    EXPECT_EQ(stored(m_notes, pictures(m_notes)[0]).size(), QSize(1600, 400));
    const QImage seen = m_notes.viewport()->grab().toImage();
    const int line = seen.height() / 4;
    EXPECT_EQ(seen.pixelColor(seen.width() / 4, line), QColor(Qt::red));
    EXPECT_EQ(seen.pixelColor(seen.width() * 3 / 4, line), QColor(Qt::white));
    EXPECT_TRUE(m_notes.TextRTF().contains(u"\\picwgoal24000"_s)) << "1600 pixels in twips";
}

TEST_F(NotesEditTest, aPictureThatDoesNotFitBesideTheTextLeavesItsLinesAlone)
{
    QTest::keyClicks(&m_notes, u"a line of text that wraps to the next one and ends there"_s);
    const qreal before = m_notes.document()->size().height();
    pasteImage(m_notes, picture(260, 100, Qt::red));
    EXPECT_LT(m_notes.document()->size().height(), before + 130);
    EXPECT_EQ(m_notes.Text(), u"a line of text that wraps to the next one and ends there\r\n"_s);
    m_notes.undo();
    EXPECT_EQ(m_notes.document()->size().height(), before) << "one step back";
}

TEST_F(NotesEditTest, pictureFilesDropInAndOtherFilesGiveTheirNames)
{
    const QTemporaryDir folder;
    const QString jpeg = folder.filePath(u"a.jpg"_s), bmp = folder.filePath(u"b.bmp"_s);
    ASSERT_TRUE(picture(30, 30, Qt::green).save(jpeg));
    ASSERT_TRUE(picture(50, 30, Qt::green).save(bmp));
    auto *both = new QMimeData;
    both->setUrls({QUrl::fromLocalFile(jpeg), QUrl::fromLocalFile(bmp)});
    paste(m_notes, both);
    ASSERT_EQ(pictures(m_notes).size(), 2);
    QFile file(jpeg);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(m_notes.TextRTF().remove(u"\r\n"_s).contains(QString::fromLatin1(file.readAll().toHex())))
        << "the camera's own bytes";
    m_notes.setText({});
    auto *other = new QMimeData;
    other->setUrls({QUrl::fromLocalFile(folder.filePath(u"contract.pdf"_s))});
    paste(m_notes, other);
    EXPECT_TRUE(pictures(m_notes).isEmpty());
    EXPECT_TRUE(m_notes.Text().contains(u"contract.pdf"_s));
}

TEST_F(NotesEditTest, copyingBetweenTwoNotesTakesFormatsAndPicturesAlong)
{
    NotesEdit other;
    other.setTextRTF(uR"({\rtf1\ansi plain {\b bold} end})"_s);
    other.moveCursor(QTextCursor::End);
    auto *data = new QMimeData;
    data->setImageData(picture(40, 20, Qt::red));
    paste(other, data);
    other.selectAll();
    other.copy();
    QTest::keyClick(&m_notes, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_notes.Text(), other.Text());
    ASSERT_EQ(pictures(m_notes).size(), 1);
    EXPECT_EQ(stored(m_notes, pictures(m_notes)[0]).pixelColor(2, 2), QColor(Qt::red));
    QTextCursor cursor(m_notes.document());
    cursor.setPosition(8);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
    m_notes.undo();
    EXPECT_EQ(m_notes.Text(), QString()) << "one paste, one undo";
    m_notes.redo();
    EXPECT_EQ(pictures(m_notes).size(), 1);
    EXPECT_EQ(stored(m_notes, pictures(m_notes)[0]).size(), QSize(40, 20));
}

TEST_F(NotesEditTest, htmlBringsItsOwnPicturesAndLeavesOutWhatIsElsewhere)
{
    const QByteArray png = encoded(picture(20, 10, Qt::red), "PNG");
    auto *data = new QMimeData;
    data->setHtml(u"<p>see <b>this</b> <img src='data:image/png;base64,%1' width='60'> and "
                  u"<img src='https://example.invalid/x.png' alt='(logo)'></p>"_s.arg(
                      QString::fromLatin1(png.toBase64())));
    paste(m_notes, data);
    reload(m_notes);
    ASSERT_EQ(pictures(m_notes).size(), 1);
    EXPECT_EQ(stored(m_notes, pictures(m_notes)[0]).size(), QSize(20, 10));
    EXPECT_EQ(pictures(m_notes)[0].width(), 60);
    EXPECT_TRUE(m_notes.Text().startsWith(u"see this "_s));
}

TEST_F(NotesEditTest, aPictureFromABrowserComesAsThePicture)
{
    auto *data = new QMimeData;
    data->setImageData(picture(40, 20, Qt::red));
    data->setHtml(u"<img src='https://example.invalid/x.png'>"_s);
    paste(m_notes, data);
    ASSERT_EQ(pictures(m_notes).size(), 1);
    EXPECT_EQ(stored(m_notes, pictures(m_notes)[0]).size(), QSize(40, 20));
}

TEST_F(NotesEditTest, aBoxOfWordsAloneTakesNoPicturesAndNoFormats)
{
    m_notes.setAcceptRichText(false);
    pasteImage(m_notes, picture(40, 20, Qt::red));
    EXPECT_FALSE(m_notes.document()->isModified());
    auto *data = new QMimeData;
    data->setImageData(picture(40, 20, Qt::red));
    data->setHtml(u"<b>bold</b> words"_s);
    data->setText(u"bold words\nand more"_s);
    data->setData(u"text/rtf"_s, R"({\rtf1\ansi {\b bold} words})");
    paste(m_notes, data);
    QTest::keyClick(&m_notes, Qt::Key_B, Qt::ControlModifier);
    QTest::keyClicks(&m_notes, u"!"_s);
    EXPECT_EQ(m_notes.Text(), u"bold words\r\nand more!"_s);
    EXPECT_TRUE(pictures(m_notes).isEmpty());
    EXPECT_FALSE(m_notes.TextRTF().contains(u"\\b "_s)) << m_notes.TextRTF().toStdString();
}

TEST_F(NotesEditTest, selectedTextHasTheRunTimesLineEnds)
{
    m_notes.setText(u"first\r\nsecond\nthird"_s);
    EXPECT_EQ(m_notes.Text(), u"first\r\nsecond\r\nthird"_s);
    m_notes.selectAll();
    EXPECT_EQ(m_notes.SelText(), u"first\r\nsecond\r\nthird"_s);
    m_notes.setSelText(u"a\r\nb\rc"_s);
    EXPECT_EQ(m_notes.Text(), u"a\r\nb\r\nc"_s);
    EXPECT_EQ(m_notes.SelText(), QString());
    m_notes.setSelText(u" d"_s);
    EXPECT_EQ(m_notes.Text(), u"a\r\nb\r\nc d"_s) << "goes in at the caret";
    m_notes.undo();
    m_notes.undo();
    EXPECT_EQ(m_notes.Text(), u"first\r\nsecond\r\nthird"_s);
}

TEST_F(NotesEditTest, settingTheTextClearsEverything)
{
    m_notes.setTextRTF(uR"({\rtf1\ansi {\b bold}})"_s);
    m_notes.moveCursor(QTextCursor::End);
    QTest::keyClicks(&m_notes, u"er"_s);
    m_notes.setText({});
    m_notes.undo();
    EXPECT_EQ(m_notes.Text(), QString()) << "the last log doesn't come back into the next";
    QTest::keyClicks(&m_notes, u"x"_s);
    EXPECT_EQ(m_notes.fontWeight(), QFont::Normal);
    m_notes.setTextRTF(u"no \\b RTF {at all"_s);
    EXPECT_EQ(m_notes.Text(), u"no \\b RTF {at all"_s);
    EXPECT_EQ(m_notes.textCursor().position(), 0);
    EXPECT_FALSE(m_notes.document()->isUndoAvailable());
    EXPECT_FALSE(m_notes.document()->isModified());
}

TEST_F(NotesEditTest, keysFormatAndTabLeaves)
{
    QWidget window;
    auto *notes = new NotesEdit(&window);
    auto *next = new NotesEdit(&window);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    notes->setFocus();
    for (const auto key : {Qt::Key_B, Qt::Key_I, Qt::Key_U})
        QTest::keyClick(notes, key, Qt::ControlModifier);
    QTest::keyClicks(notes, u"x"_s);
    QTest::keyClick(notes, Qt::Key_B, Qt::ControlModifier);
    QTest::keyClicks(notes, u"y"_s);
    QTextCursor cursor(notes->document());
    cursor.setPosition(1);
    EXPECT_TRUE(cursor.charFormat().fontItalic() && cursor.charFormat().fontUnderline());
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
    cursor.setPosition(2);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Normal);
    QTest::keyClick(notes, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(notes->Text(), u"xy\t"_s);

    int focused = 0, passed = 0;
    next->gotFocus = [&] { ++focused; };
    next->keyPressed = [&](int key) { return ++passed, key == Qt::Key_F8; };
    QTest::keyClick(notes, Qt::Key_Tab);
    EXPECT_TRUE(next->hasFocus());
    EXPECT_EQ(focused, 1);
    QTest::keyClick(next, Qt::Key_F8);
    QTest::keyClick(next, Qt::Key_Z);
    EXPECT_EQ(passed, 2);
    EXPECT_EQ(next->Text(), u"z"_s);
}

// A Display window shows one log after the other in one field.
TEST_F(NotesEditTest, picturesOfReplacedNotesAreLetGo)
{
    pasteImage(m_notes, picture(40, 20, Qt::red));
    const QString name = pictures(m_notes)[0].name();
    const QString rtf = m_notes.TextRTF();
    m_notes.setTextRTF(u"next log"_s);
    EXPECT_FALSE(m_notes.document()->resource(QTextDocument::ImageResource, QUrl(name)).isValid());
    m_notes.setTextRTF(rtf);
    EXPECT_EQ(stored(m_notes, pictures(m_notes)[0]).size(), QSize(40, 20)) << "and back";
}

// As the bytes of a picture are that another program left in a memo: without a blank in a million letters.
TEST(NotesEdit, ShowsAWordWithoutEndAtOnce)
{
    const QString word(1'000'000, u'5');
    NotesEdit notes;
    notes.resize(600, 400);
    notes.show();
    QElapsedTimer took;
    took.start();
    notes.setText(u"Picture: "_s + word);
    EXPECT_EQ(notes.Text().size(), word.size() + 9);
    notes.setTextRTF(u"{\\rtf1 Picture: "_s + word + u'}');
    EXPECT_EQ(notes.Text().size(), word.size() + 9);
    QPlainTextEdit memo;
    memo.show();
    showPlainText(memo, word);
    QApplication::processEvents();
    EXPECT_LT(took.elapsed(), 10'000);
    notes.setText(u"Words"_s);
    EXPECT_EQ(notes.wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
}

} // namespace
