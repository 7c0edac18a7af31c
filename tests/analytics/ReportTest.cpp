// The reports written to PDF and read back with poppler's tools.
#include "Household2005.h"
#include "ProgramFolder.h"

#include "analytics/AnalyticsTexts.h"
#include "analytics/PageComposer.h"
#include "analytics/Recalculation.h"
#include "analytics/ReportPainter.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace velmora::test;
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
    QString text; // in drawing order, without white space
    QSizeF size;  // in points
    std::vector<std::pair<QString, QRectF>> words;
};

struct Written
{
    std::vector<Page> pages;
    QString info; // pdfinfo's
    QString all() const
    {
        QString text;
        for (const Page& page : pages)
            text += page.text;
        return text;
    }
};

QString squeezed(QString text)
{
    return text.remove(QRegularExpression(QStringLiteral("\\s")));
}

Written write(const ReportDocument& report)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("report.pdf"));
    if (!analytics::ReportPainter::writePdf(report, path))
        throw std::runtime_error("the report was not written");
    Written written{{}, poppler("pdfinfo", {"-enc", "UTF-8", path})};
    static const QRegularExpression element(QStringLiteral("<(page|word) ([^>]*)>([^<]*)")),
        number(QStringLiteral("(\\w+)=\"([0-9.]+)\""));
    for (const QRegularExpressionMatch& m :
         element.globalMatch(poppler("pdftotext", {"-bbox", "-enc", "UTF-8", path, "-"}))) {
        std::map<QString, double> at;
        for (const QRegularExpressionMatch& n : number.globalMatch(m.captured(2)))
            at[n.captured(1)] = n.captured(2).toDouble();
        if (m.captured(1) == QLatin1String("page"))
            written.pages.push_back({{}, QSizeF(at["width"], at["height"]), {}});
        else
            written.pages.back().words.emplace_back(
                m.captured(3), QRectF(QPointF(at["xMin"], at["yMin"]), QPointF(at["xMax"], at["yMax"])));
    }
    const QStringList texts =
        poppler("pdftotext", {"-raw", "-enc", "UTF-8", path, "-"}).split(QLatin1Char('\f'));
    for (std::size_t p = 0; p < written.pages.size(); ++p)
        written.pages[p].text = squeezed(texts.value(static_cast<qsizetype>(p)));
    return written;
}

int occurrences(const QString& text, const QString& part)
{
    return static_cast<int>(text.count(squeezed(part)));
}

// Nothing runs into the 15 mm margins or over another word.
void expectLaidOut(const Written& written)
{
    const double margin = 15 / 25.4 * 72 - 1;
    for (const Page& page : written.pages) {
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

TEST(Report, MonthReportsListTheDetailRowsAndNothingElse)
{
    struct Case
    {
        const char* month;
        const char* account;
        QStringList present;
        QStringList absent;
        bool landscape;
    };
    const Case cases[] = {
        {"3 - Март",
         "",
         {"Статистика поступлений за 03.2005", "Дата Сумма Комментарий N опер.",
          "15.03.2005 -6000,5 Снятие на ремонт 2", "01.03.2005 5000 Зарплата 1", "Итого: -1000,5 Операций: 2",
          "Страница 1 из 1"},
         {"Проценты", "Премия", "Счет:"},
         false},
        {"11",
         "1500 - Подарки",
         {"Статистика расходов за 11.2005", "Счет: 1500 - Подарки",
          "Дата Сумма Комментарий Кошелек N опер. Примечание",
          "15.11.2005 250 Книга Основной 8 на день рождения", "Итого: 250 Операций: 1", "Страница 1 из 1"},
         {"Продукты", "Проценты", "покупка"},
         true},
    };
    ProgramFolder folder;
    folder.write(household2005().database());
    store::Store store(folder.path());
    for (const Case& c : cases) {
        const auto period = analytics::Period::choose(c.month, "2005", QDate(2026, 3, 15));
        const analytics::DetailRequest request{
            *c.account ? analytics::DetailKind::Expenses : analytics::DetailKind::Income, c.account};
        const ReportDocument report = ReportDocument::of(
            *analytics::Recalculation::read(store, period, request)->details, period, c.account);
        QStringList rightAligned;
        for (const analytics::ReportColumn& column : report.columns)
            if (column.alignRight)
                rightAligned.append(column.header);
        EXPECT_EQ(rightAligned, QStringList({"Сумма", "N опер."})) << c.month;
        const Written r = write(report);
        ASSERT_EQ(r.pages.size(), 1u) << c.month;
        for (const QString& text : c.present)
            EXPECT_EQ(occurrences(r.all(), text), 1) << c.month << ": " << text.toStdString();
        for (const QString& text : c.absent)
            EXPECT_EQ(occurrences(r.all(), text), 0) << c.month << ": " << text.toStdString();
        EXPECT_EQ(r.pages[0].size.width() > r.pages[0].size.height(), c.landscape) << c.month;
        EXPECT_TRUE(r.info.contains(QRegularExpression("Creator: +Velmora"))) << r.info.toStdString();
        EXPECT_TRUE(r.info.contains(QRegularExpression("Title: +" + report.title))) << r.info.toStdString();
        expectLaidOut(r);
    }
}

// A long month of expenses: wrapped texts, page after page, each operation
// exactly once, the total on the last page only.
TEST(Report, LongListRunsOverPagesWithNothingCutOff)
{
    const analytics::DetailTable details = longExpenseList(150);
    const Written r = write(ReportDocument::of(details, march(), QStringLiteral("3 - Питание")));
    const int pages = static_cast<int>(r.pages.size());
    ASSERT_GT(pages, 2);
    for (int p = 0; p < pages; ++p) {
        const QString& text = r.pages[static_cast<std::size_t>(p)].text;
        EXPECT_EQ(occurrences(text, QString::fromUtf8(analytics::texts::reportPage).arg(p + 1).arg(pages)),
                  1);
        EXPECT_EQ(occurrences(text, QStringLiteral("Статистика расходов за 03.2005")), 1) << "page " << p + 1;
        EXPECT_EQ(occurrences(text, QStringLiteral("Итого:")), p + 1 == pages ? 1 : 0) << "page " << p + 1;
    }
    for (const analytics::DetailRow& row : details.rows)
        EXPECT_EQ(occurrences(r.all(), row.comment) + occurrences(r.all(), row.note), 2)
            << row.comment.toStdString();
    EXPECT_EQ(occurrences(r.all(), QStringLiteral("Итого: 11400 Операций: 150")), 1);
    expectLaidOut(r);
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
