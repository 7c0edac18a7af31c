#include "FileChecks.h"

#include "CsvExport.h"
#include "ProgramFolder.h"
#include "jet/Reader.h"
#include "store/Schema.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

namespace velmora::test {

namespace {

// mdbtools prints each half of a character outside the Basic Multilingual
// Plane as "?", and a text only up to a NUL character in it; our CSV is
// compared as mdbtools would print it.
QString asMdbtoolsPrints(QString csv)
{
    for (QChar& c : csv)
        if (c.isSurrogate())
            c = QLatin1Char('?');
    static const QRegularExpression fromNul(QStringLiteral("\\x{0}(?:[^\"]|\"\")*"));
    return csv.remove(fromNul);
}

} // namespace

void compareWithMdbExport(const QString& path)
{
    const QByteArray bytes = contents(path);
    const jet::Database db = jet::readDatabase(
        {reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())},
        store::kFilePassword);
    for (const jet::Table& table : db.tables) {
        const QString name = QString::fromStdU16String(table.name);
        QProcess exporter;
        exporter.start("mdb-export", {path, name});
        QVERIFY2(exporter.waitForFinished(60000), "mdb-export did not finish");
        QCOMPARE(exporter.exitCode(), 0);
        QCOMPARE(QString::fromUtf8(exporter.readAllStandardOutput()),
                 asMdbtoolsPrints(QString::fromStdString(velmora::exportCsv(table))));
    }
}

} // namespace velmora::test
