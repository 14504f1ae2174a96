// Every value that the transfers carry, as two other programs read it in source and target: pictures and rich
// notes, letters of many scripts, Null beside the empty text, and a file that another program wrote.

#include "tests/shell/TransferOffice.h"
#include "tests/support/NpmReader.h"

#include "platform/system/Files.h"

#include <QJsonArray>

using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

using Rows = QList<QJsonObject>;
using Reader = std::function<std::optional<Rows>(const QString &file, const QString &table)>;

// By mdb-export, with marks between fields and rows that stand in no text.
std::optional<Rows> readByExport(const QString &file, const QString &table)
{
    const QString field(QChar(0x1f)), row(QChar(0x1e)), null(QChar(0x1d));
    const QString text = outputOf(u"mdb-export"_s, {u"-Q"_s, u"-d"_s, field, u"-R"_s, row, u"-0"_s, null,
                                                    u"-T"_s, u"%Y-%m-%d %H:%M:%S"_s, file, table});
    QStringList lines = text.split(row, Qt::SkipEmptyParts);
    const QStringList names = lines.takeFirst().split(field);
    Rows rows;
    for (const QString &line : lines) {
        const QStringList fields = line.split(field);
        EXPECT_EQ(fields.size(), names.size());
        QJsonObject object;
        for (qsizetype i = 0; i < names.size(); ++i)
            object[names[i]] = fields.value(i) == null ? QJsonValue() : QJsonValue(fields.value(i));
        rows += object;
    }
    return rows;
}

const std::pair<const char *, Reader> kReaders[]{
    {"mdb-export", readByExport}, {"mdb-reader", [](const QString &file, const QString &table) {
                                       return readByNpm(file, table, VARDELIN_ROOT);
                                   }}};

QStringList textsOf(Rows rows, const QStringList &left)
{
    QStringList texts;
    for (QJsonObject &row : rows) {
        for (const QString &column : left)
            row.remove(column);
        texts += QString::fromUtf8(QJsonDocument(row).toJson(QJsonDocument::Compact));
    }
    texts.sort();
    return texts;
}

// The rows of `table`, changed as they shall have been on the way, are those of the target, but for the
// columns that are `left`.
void expectCarried(const QString &source, const QString &target, const QString &table,
                   const QStringList &left, const std::function<Rows(Rows)> &change)
{
    for (const auto &[name, read] : kReaders) {
        SCOPED_TRACE(name);
        const auto from = read(source, table), to = read(target, table);
        if (!from || !to)
            continue;
        EXPECT_GT(from->size(), 0);
        EXPECT_EQ(textsOf(*to, left), textsOf(change(*from), left));
    }
    expectSound(target, VARDELIN_ROOT);
}

Rows asTheyAre(Rows rows)
{
    return rows;
}

Rows withPairedTimes(Rows rows)
{
    for (QJsonObject &row : rows) {
        if (row[u"Beginning Time"_s].isNull() || row[u"Ending Time"_s].isNull())
            row[u"Beginning Time"_s] = row[u"Ending Time"_s] = QJsonValue();
    }
    return rows;
}

// Each name with an apostrophe costs the table its first client.
Rows imported(const Rows &rows)
{
    Rows table;
    for (const QJsonObject &row : rows) {
        const QString name = row[u"Client Last Name"_s].toString() + row[u"Client First Name"_s].toString();
        if (name.contains(u'\'') && !table.isEmpty())
            table.removeFirst();
        table += row;
    }
    return table;
}

void expectTenths(const QString &file)
{
    const Rows rows = readByExport(file, u"Vardelins"_s).value();
    for (const QJsonObject &row : rows) {
        EXPECT_TRUE(row[u"Fee"_s].isNull());
        const auto moment = [&](const QString &column) {
            return QDateTime::fromString(row[column].toString(), u"yyyy-MM-dd HH:mm:ss"_s);
        };
        const double seconds =
            static_cast<double>(moment(u"Beginning Time"_s).secsTo(moment(u"Ending Time"_s)));
        EXPECT_EQ(row[u"Duration"_s].isNull(), row[u"Ending Time"_s].isNull());
        EXPECT_NEAR(row[u"Duration"_s].toString().toDouble(), seconds / 3600, 0.0501);
    }
}

// All four ways, from `source` to files of their own.
void carryAll(const QString &source)
{
    const QStringList number{u"Indexing Field"_s};
    const QStringList never{u"Active Client Notes"_s, u"Active Client Forum"_s};
    TransferOffice out;
    const QString logs = out.folder.filePath(u"logs.mdb"_s), clients = out.folder.filePath(u"clients.mdb"_s);
    out.global.DatabaseFileName = source;
    out.open();
    out.run(u"mnuExportActiveClients"_s, clients, u"Active Client information has been successfully"_s);
    expectCarried(source, clients, u"Active Clients"_s, never, asTheyAre);
    out.window->showSelection(u"Select * from Vardelins"_s);
    out.run(u"mnuExportVardelins"_s, logs, u"Vardelins have been successfully exported to "_s);
    expectCarried(source, logs, u"Vardelins"_s, number, asTheyAre);

    TransferOffice in;
    in.open();
    const QString own = in.global.DatabaseFileName;
    in.run(u"mnuImportVardelins"_s, source,
           u"The selected Vardelins have successfully been imported from "_s);
    expectCarried(source, own, u"Vardelins"_s, number + QStringList{u"Fee"_s, u"Duration"_s},
                  withPairedTimes);
    expectTenths(own);
    in.run(u"mnuImportDatabase"_s, source, u"The Active Client information from "_s);
    expectCarried(source, own, u"Active Clients"_s, never, imported);
    for (const QString &column : never) {
        EXPECT_EQ(in.columnOf(clients, u"Active Clients"_s, column).join(QString()), QString());
        EXPECT_EQ(in.column(u"Active Clients"_s, column).join(QString()), QString());
    }
}

TEST(CarriedValues, AreTheVeryOnesWithPicturesAndRichNotes)
{
    TransferOffice office;
    QString picture = u"{\\rtf1\\ansi{\\pict\\pngblip\\picw10\\pich10 "_s;
    for (int i = 0; i < 40'000; ++i)
        picture += u"%1"_s.arg(i * 37 % 256, 2, 16, QChar(u'0'));
    office.addLog(u"Žižka, Jan"_s, 46310.25, DateSerial{46310.3125}, picture + u"}\\par Caf\\'e9"_s);
    office.addLog(u"O'Brien, Mary"_s, 46311.5, NullValue{}, u"Ruhe – “Zitat”, Киев, 東京\r\n\tend"_s);
    office.addLog(QString(), 46312.5, DateSerial{46313.75}, QString());
    office.add(u"Vardelins"_s, {{u"Fee"_s, u"-12.3456"_s}, {u"Duration"_s, u".1"_s}});
    office.addClient(u"Žižka"_s, u"Jan"_s, u"Прага"_s);
    office.addClient(u"O'Brien"_s, u"Mary"_s, QString());
    office.add(u"Active Clients"_s, {{u"Client Last Name"_s, u"Solo"_s},
                                     {u"Client First Name"_s, QString()},
                                     {u"Active Client History"_s, QString(9000, u'é')},
                                     {u"Active Client Retainer Date"_s, DateSerial{46310.0}}});
    carryAll(office.global.DatabaseFileName);
}

TEST(CarriedValues, OfAFileOfAnotherProgram)
{
    const QString sample = QString::fromUtf8(VARDELIN_ROOT) + u"/../shared/samples/office-small.mdb"_s;
    if (!QFile::exists(sample))
        GTEST_SKIP() << "The sample of another program is not beside the project.";
    const QTemporaryDir folder;
    const QString copy = folder.filePath(u"office.mdb"_s);
    CopyFile(sample, copy);
    carryAll(copy);
}

} // namespace
