// What the program stores is what another program reads: logs of every kind of notes, compared field by field
// with the npm reader.

#include "database/CreateDatabase.h"
#include "platform/base/Dates.h"
#include "platform/data/Ado.h"
#include "tests/support/Fakes.h"
#include "tests/support/NpmReader.h"
#include "tests/support/PrintQt.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

// A picture's worth of RTF: longer than any page.
QString pictureRtf(int bytes)
{
    QString rtf = u"{\\rtf1\\ansi{\\pict\\pngblip\\picw10\\pich10 "_s;
    for (int i = 0; i < bytes; ++i)
        rtf += u"%1"_s.arg(i * 37 % 256, 2, 16, QChar(u'0'));
    return rtf + u"}\\par Caf\\'e9}"_s;
}

struct Log
{
    Value client, notes, rich, begin, duration, fee;
};

QList<Log> logs()
{
    const auto moment = [](int day) { return serialOf({2026, 3, day, 9, 30, day}); };
    return {
        {u"O'Brien, Mary"_s, u"Review file"_s, u"{\\rtf1 Review file}"_s, moment(1), u".4"_s, u"60"_s},
        {u"Žižka, Jan"_s, u"Ruhe – “Zitat”, Киев, 東京"_s, NullValue(), moment(2), u"1.7"_s, u"-12.3456"_s},
        {u""_s, u""_s, u""_s, NullValue(), NullValue(), NullValue()},
        {NullValue(), QString(31, u'x'), pictureRtf(2000), moment(4), u"-.1"_s, u"0"_s},
        {u"x"_s, QString(33, u'é'), pictureRtf(60000), moment(5), u"25.4"_s, u"922337203685477.5807"_s},
        {QString(200, u'w'), QString(5000, u'Ж') + u"\r\nend"_s, pictureRtf(1),
         serialOf({1901, 1, 2, 6, 0, 0}), u"0"_s, u"15"_s}};
}

void expectText(const QJsonObject &read, const QString &column, const Value &stored)
{
    EXPECT_EQ(read.value(column).toString(), joinText(stored)) << column.toStdString();
    EXPECT_EQ(read.value(column).isString(), !stored.isNull()) << column.toStdString();
}

void expectRow(const QJsonObject &read, const Log &log)
{
    expectText(read, u"Client"_s, log.client);
    expectText(read, u"Vardelin"_s, log.notes);
    expectText(read, u"VardeGraphic"_s, log.rich);
    if (!log.fee.isNull()) {
        EXPECT_EQ(toCurrency(Value(read.value(u"Fee"_s).toString())), toCurrency(log.fee));
    }
    if (!log.duration.isNull()) {
        EXPECT_EQ(static_cast<float>(read.value(u"Duration"_s).toDouble()), toSingle(log.duration));
    }
    if (!log.begin.isNull()) {
        const QString begin = toQDateTime(toDate(log.begin)).toString(u"yyyy-MM-dd HH:mm:ss"_s);
        EXPECT_EQ(read.value(u"Beginning Time"_s).toString(), begin);
    }
}

void store(TestProgram &program, const QList<Log> &all)
{
    const auto database = program.engine.OpenDatabase(program.global.DatabaseFileName);
    const auto rows = database->OpenRecordset(u"Vardelins"_s);
    for (const Log &log : all) {
        rows->AddNew();
        rows->SetField(u"Client"_s, log.client);
        rows->SetField(u"Vardelin"_s, log.notes);
        rows->SetField(u"VardeGraphic"_s, log.rich);
        rows->SetField(u"Beginning Time"_s, log.begin);
        rows->SetField(u"Duration"_s, log.duration);
        rows->SetField(u"Fee"_s, log.fee);
        rows->Update();
    }
}

} // namespace

TEST(OtherReaders, ReadTheVeryValuesThatWereStored)
{
    QTemporaryDir folder;
    TestProgram program;
    program.global.DatabaseFileName = folder.filePath(u"office.mdb"_s);
    CreateDatabase(program.global);
    const QList<Log> all = logs();
    store(program, all);
    expectSound(program.global.DatabaseFileName, VARDELIN_ROOT);
    EXPECT_EQ(outputOf(u"mdb-count"_s, {program.global.DatabaseFileName, u"Vardelins"_s}).trimmed(),
              QString::number(all.size()));

    const auto read = readByNpm(program.global.DatabaseFileName, u"Vardelins"_s, VARDELIN_ROOT);
    if (!read)
        return;
    ASSERT_EQ(read->size(), all.size());
    for (qsizetype i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(i);
        expectRow((*read)[i], all[i]);
    }
}
