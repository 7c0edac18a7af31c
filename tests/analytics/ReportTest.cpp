// The reports written to PDF and read back with poppler's tools; every one
// names the program as its creator and carries the report's title.
#include "analytics/AnalyticsTexts.h"
#include "analytics/DetailTable.h"
#include "analytics/PageComposer.h"
#include "analytics/ReportPainter.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using analytics::ReportDocument;

namespace {

analytics::Period march()
{
    return analytics::Period::choose("3", "2005", QDate(2026, 1, 1));
}

QString poppler(const char* tool, const QStringList& arguments)
{
    QProcess process;
    process.start(tool, arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit || process.exitCode())
        throw std::runtime_error(std::string(tool) +
                                 " failed: " + process.readAllStandardError().toStdString());
    return QString::fromUtf8(process.readAllStandardOutput());
}

struct Page
{
    QString text; // in reading order, without white space
    QSizeF size;  // in points
    std::vector<std::pair<QString, QRectF>> words;
};

using Pages = std::vector<Page>;

QString all(const Pages& pages)
{
    QString text;
    for (const Page& page : pages)
        text += page.text;
    return text;
}

Pages write(const ReportDocument& report)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("report.pdf"));
    if (!analytics::ReportPainter::writePdf(report, path))
        throw std::runtime_error("the report was not written");
    const QString info = poppler("pdfinfo", {"-enc", "UTF-8", path});
    EXPECT_TRUE(info.contains(QRegularExpression("Creator: +Velmora\n"))) << info.toStdString();
    EXPECT_TRUE(
        info.contains(QRegularExpression("Title: +" + QRegularExpression::escape(report.title) + "\n")))
        << info.toStdString();
    Pages pages;
    static const QRegularExpression element(QStringLiteral("<(page|word) ([^>]*)>([^<]*)")),
        number(QStringLiteral("(\\w+)=\"([0-9.]+)\""));
    for (const QRegularExpressionMatch& m :
         element.globalMatch(poppler("pdftotext", {"-bbox", "-enc", "UTF-8", path, "-"}))) {
        std::map<QString, double> at;
        for (const QRegularExpressionMatch& n : number.globalMatch(m.captured(2)))
            at[n.captured(1)] = n.captured(2).toDouble();
        if (m.captured(1) == QLatin1String("page")) {
            pages.push_back({{}, QSizeF(at["width"], at["height"]), {}});
        } else {
            pages.back().text += m.captured(3);
            pages.back().words.emplace_back(
                m.captured(3), QRectF(QPointF(at["xMin"], at["yMin"]), QPointF(at["xMax"], at["yMax"])));
        }
    }
    return pages;
}

int occurrences(const QString& text, const QString& part)
{
    return static_cast<int>(text.count(QString(part).remove(QRegularExpression(QStringLiteral("\\s")))));
}

// Nothing runs into the 15 mm margins or over another word.
void expectLaidOut(const Pages& pages)
{
    const double margin = 15 / 25.4 * 72 - 1;
    for (const Page& page : pages) {
        const QRectF inside = QRectF(QPointF(), page.size).adjusted(margin, margin, -margin, -margin);
        for (auto word = page.words.begin(); word != page.words.end(); ++word) {
            EXPECT_TRUE(inside.contains(word->second)) << word->first.toStdString();
            for (auto other = page.words.begin(); other != word; ++other) {
                const QRectF both = word->second.intersected(other->second);
                EXPECT_TRUE(both.width() < 1 || both.height() < 1)
                    << word->first.toStdString() << " over " << other->first.toStdString();
            }
        }
    }
}

// A month of `count` expenses with long comments, purses and notes (each note one word of 100 letters).
analytics::DetailTable longExpenseList(int count)
{
    analytics::DetailTable details;
    details.kind = analytics::DetailKind::Expenses;
    for (int i = 1; i <= count; ++i) {
        const QString n = QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0'));
        details.rows.push_back(
            {QStringLiteral("%1.03.2005").arg(1 + i % 28, 2, 10, QLatin1Char('0')),
             store::Amount::fromUnits(i * 10000 + 5000),
             ("Покупка-" + n + QStringLiteral(" продукты хозяйственные мелочи").repeated(4)).left(100),
             QStringLiteral("Кошелёк с очень длинным названием номер %1").arg(i % 3), 1000 + i,
             "Н" + n + QStringLiteral("ж").repeated(96)});
    }
    return details;
}

} // namespace

// A long month of expenses of one account on lying pages: wrapped texts, page
// after page, each operation exactly once, the total on the last page only,
// nothing cut off or drawn over. A month's income: one upright page without
// an account line.
TEST(Report, ReadBackFromPdf)
{
    const analytics::DetailTable details = longExpenseList(150);
    const ReportDocument report = ReportDocument::of(details, march(), QStringLiteral("3 - Питание"));
    QStringList rightAligned;
    for (const analytics::ReportColumn& column : report.columns)
        if (column.alignRight)
            rightAligned.append(column.header);
    EXPECT_EQ(rightAligned, QStringList({"Сумма", "N опер."}));
    const Pages r = write(report);
    const int pages = static_cast<int>(r.size());
    ASSERT_GT(pages, 2);
    for (int p = 0; p < pages; ++p) {
        const Page& page = r[static_cast<std::size_t>(p)];
        EXPECT_EQ(
            occurrences(page.text, QString::fromUtf8(analytics::texts::reportPage).arg(p + 1).arg(pages)), 1);
        for (const char* text : {"Статистика расходов за 03.2005", "Счет: 3 - Питание",
                                 "Дата Сумма Комментарий Кошелек N опер. Примечание"})
            EXPECT_EQ(occurrences(page.text, text), 1) << "page " << p + 1 << ": " << text;
        EXPECT_EQ(occurrences(page.text, QStringLiteral("Итого:")), p + 1 == pages ? 1 : 0)
            << "page " << p + 1;
        EXPECT_GT(page.size.width(), page.size.height());
    }
    for (const analytics::DetailRow& row : details.rows)
        EXPECT_EQ(occurrences(all(r), row.comment) + occurrences(all(r), row.note), 2)
            << row.comment.toStdString();
    EXPECT_EQ(occurrences(all(r), QStringLiteral("Итого: 11400 Операций: 150")), 1);
    expectLaidOut(r);

    analytics::DetailTable income;
    income.rows.push_back({"15.03.2005", store::Amount::fromUnits(-60005000), "Снятие на ремонт", {}, 2, {}});
    const Pages upright = write(ReportDocument::of(income, march(), {}));
    ASSERT_EQ(upright.size(), 1u);
    EXPECT_LT(upright[0].size.width(), upright[0].size.height());
    EXPECT_EQ(occurrences(all(upright), "Дата Сумма Комментарий 15.03.2005 -6000,5 Снятие на ремонт"), 1);
    EXPECT_EQ(occurrences(all(upright), "Счет:"), 0);
}

// Whatever the number of lines, the pages take them in order, each exactly
// once, and the total goes on the last page, on a page of its own when it
// does not fit under the last lines.
TEST(Report, PagesTakeEveryLineOnceWithTheTotalLast)
{
    const analytics::DetailTable all = longExpenseList(60);
    bool totalAlone = false;
    for (std::size_t lines = 0; lines <= all.rows.size(); ++lines) {
        analytics::DetailTable details = all;
        details.rows.resize(lines);
        const ReportDocument report = ReportDocument::of(details, march(), QStringLiteral("3 - Питание"));
        QBuffer pdf;
        pdf.open(QIODevice::WriteOnly);
        QPdfWriter writer(&pdf);
        analytics::ReportPainter::setUpPage(writer, report);
        const auto pages = analytics::PageComposer(report, writer).paginate();
        std::size_t next = 0;
        for (const analytics::PageComposer::Page& page : pages) {
            EXPECT_EQ(page.first, next) << lines << " lines";
            EXPECT_EQ(page.last, &page == &pages.back()) << lines << " lines";
            next += page.count;
        }
        EXPECT_EQ(next, lines);
        totalAlone = totalAlone || (pages.size() > 1 && pages.back().count == 0);
    }
    EXPECT_TRUE(totalAlone);
}
