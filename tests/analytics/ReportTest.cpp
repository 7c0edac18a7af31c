#include "Household2005.h"
#include "PdfText.h"
#include "ProgramFolder.h"

#include "analytics/AnalyticsTexts.h"
#include "analytics/PageComposer.h"
#include "analytics/Recalculation.h"
#include "analytics/ReportDocument.h"
#include "analytics/ReportPainter.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace velmora::test;
using analytics::DetailKind;
using analytics::DetailRequest;
using analytics::Period;
using analytics::ReportDocument;

namespace {

constexpr double kMarginPoints = 15 / 25.4 * 72;

struct Rendered
{
    QStringList pages;
    std::vector<PdfPage> words;
    QString all() const { return pages.join(QLatin1Char('\n')); }
};

Rendered render(const ReportDocument& report)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("report.pdf"));
    if (!analytics::ReportPainter::writePdf(report, path))
        throw std::runtime_error("the report was not written");
    return {pdfPageTexts(path), pdfWords(path)};
}

int occurrences(const QString& text, const QString& part)
{
    return static_cast<int>(withoutSpaces(text).count(withoutSpaces(part)));
}

// Nothing may run into the margins, let alone off the page.
void expectInsideMargins(const Rendered& r)
{
    for (std::size_t p = 0; p < r.words.size(); ++p) {
        const QRectF inside = QRectF(QPointF(0, 0), r.words[p].size)
                                  .adjusted(kMarginPoints, kMarginPoints, -kMarginPoints, -kMarginPoints);
        for (const PdfWord& word : r.words[p].words)
            EXPECT_TRUE(inside.adjusted(-1, -1, 1, 1).contains(word.box))
                << "page " << p + 1 << ": " << word.text.toStdString();
    }
}

ReportDocument monthReport(const char* month, const std::optional<QString>& account)
{
    ProgramFolder folder;
    folder.write(household2005().database());
    store::Store store(folder.path());
    const Period period =
        Period::choose(QString::fromUtf8(month), QStringLiteral("2005"), QDate(2026, 3, 15));
    const DetailRequest request{account ? DetailKind::Expenses : DetailKind::Income,
                                account.value_or(QString())};
    const auto result = analytics::Recalculation::read(store, period, request);
    if (!result)
        throw std::runtime_error("the household file could not be read");
    return ReportDocument::of(*result->details, period, account.value_or(QString()));
}

} // namespace

TEST(Report, MonthReportsListTheDetailRowsAndNothingElse)
{
    struct Case
    {
        const char* month;
        std::optional<QString> account;
        QStringList present;
        QStringList absent;
        bool landscape;
    };
    const Case cases[] = {
        {"3 - Март",
         std::nullopt,
         {"Статистика поступлений за 03.2005", "Дата Сумма Комментарий N опер.",
          "15.03.2005 -6000,5 Снятие на ремонт 2", "01.03.2005 5000 Зарплата 1", "Итого: -1000,5 Операций: 2",
          "Страница 1 из 1"},
         {"Проценты", "Премия", "Счет:"},
         false},
        {"11",
         QStringLiteral("1500 - Подарки"),
         {"Статистика расходов за 11.2005", "Счет: 1500 - Подарки",
          "Дата Сумма Комментарий Кошелек N опер. Примечание",
          "15.11.2005 250 Книга Основной 8 на день рождения", "Итого: 250 Операций: 1", "Страница 1 из 1"},
         {"Продукты", "Проценты", "покупка"},
         true},
    };
    for (const Case& c : cases) {
        const Rendered r = render(monthReport(c.month, c.account));
        ASSERT_EQ(r.pages.size(), 1) << c.month;
        for (const QString& text : c.present)
            EXPECT_EQ(occurrences(r.all(), text), 1) << c.month << ": " << text.toStdString() << "\n"
                                                     << r.all().toStdString();
        for (const QString& text : c.absent)
            EXPECT_EQ(occurrences(r.all(), text), 0) << c.month << ": " << text.toStdString();
        const QSizeF page = r.words.front().size;
        EXPECT_EQ(page.width() > page.height(), c.landscape) << c.month;
        expectInsideMargins(r);
    }
}

// A long month of expenses: wrapped texts, page after page, each operation
// exactly once, the total on the last page only.
TEST(Report, LongListRunsOverPagesWithNothingCutOff)
{
    const analytics::DetailTable details = longExpenseList(150);
    const Period march = Period::choose(QStringLiteral("3"), QStringLiteral("2005"), QDate(2026, 1, 1));
    const Rendered r = render(ReportDocument::of(details, march, QStringLiteral("3 - Питание")));
    const int pages = static_cast<int>(r.pages.size());
    ASSERT_GT(pages, 2);
    for (int p = 0; p < pages; ++p) {
        const QString& text = r.pages[p];
        EXPECT_EQ(occurrences(text, QString::fromUtf8(analytics::texts::reportPage).arg(p + 1).arg(pages)),
                  1);
        EXPECT_EQ(occurrences(text, QStringLiteral("Статистика расходов за 03.2005")), 1) << "page " << p + 1;
        EXPECT_EQ(occurrences(text, QStringLiteral("Итого:")), p + 1 == pages ? 1 : 0) << "page " << p + 1;
    }
    for (const analytics::DetailRow& row : details.rows) {
        EXPECT_EQ(occurrences(r.all(), row.comment), 1) << row.comment.toStdString();
        EXPECT_EQ(occurrences(r.all(), row.note), 1) << row.note.toStdString();
    }
    EXPECT_EQ(occurrences(r.all(), QStringLiteral("Итого: 11400 Операций: 150")), 1);
    expectInsideMargins(r);
}

// Whatever the number of lines, the pages take them in order, each exactly
// once, and the total goes on the last page, on a page of its own when it
// does not fit under the last lines.
TEST(Report, PagesTakeEveryLineOnceWithTheTotalLast)
{
    const Period march = Period::choose(QStringLiteral("3"), QStringLiteral("2005"), QDate(2026, 1, 1));
    const analytics::DetailTable all = longExpenseList(60);
    bool totalAlone = false;
    for (std::size_t lines = 0; lines <= all.rows.size(); ++lines) {
        analytics::DetailTable details = all;
        details.rows.resize(lines);
        const ReportDocument report = ReportDocument::of(details, march, QStringLiteral("3 - Питание"));
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
