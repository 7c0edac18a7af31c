#include "charts/ExpenseCharts.h"
#include "LedgerFile.h"
#include "ProgramFolder.h"
#include "analytics/ChoiceLists.h"
#include "analytics/Recalculation.h"
#include "store/Store.h"
#include "support/RecordingSink.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using analytics::Period;
using charts::ExpenseCharts;
using charts::Threshold;

namespace {

const QDate kToday(2005, 3, 20);

// "name sum" per bar in drawing order, "name sum>value" for a bar zeroed by the threshold.
QString bars(const charts::ChartData& data)
{
    QStringList shown;
    for (const charts::ChartBar& bar : data.bars) {
        const QString sum = bar.sum.toPlainString(), value = bar.value().toPlainString();
        shown.append(bar.name + " " + sum + (value == sum && !bar.excluded ? "" : ">" + value));
    }
    return shown.join(" | ");
}

} // namespace

// Codes that sort otherwise as texts, expenses in March 2005 and around it,
// one against a code the catalogue lacks.
TEST(ExpenseCharts, FieldsChooseThePeriodAndTheThresholdZeroesBarsAbove)
{
    DataBuilder data;
    data.account(1, "Питание").account(2, "Транспорт").account(10, "Аптека").account(4, "Отпуск");
    data.bill(QDate(2005, 3, 1), 1, "600").billAt(QDateTime(QDate(2005, 3, 31), QTime(23, 59)), 1, "400");
    data.bill(QDate(2005, 3, 5), 10, "1500")
        .bill(QDate(2005, 3, 7), 2, "12,34")
        .bill(QDate(2005, 3, 8), 99, "7");
    data.bill(QDate(2005, 2, 28), 2, "100").billAt(QDateTime(QDate(2005, 4, 1), QTime(0, 0)), 4, "50000");
    data.bill(QDate(2005, 12, 31), 1, "5").bill(QDate(2004, 3, 10), 1, "9999");
    data.bill(QDate(2006, 1, 1), 2, "8888").bill(QDate(2007, 6, 1), 1, "-20");
    ProgramFolder folder;
    folder.write(data.database());
    store::Store store(folder.path());
    const QString march = "03.2005 Питание 1000 | Транспорт 12.34 | Аптека 1500";
    const QString year = "2005 Питание 1005 | Транспорт 112.34 | Отпуск 50000 | Аптека 1500";
    struct Case
    {
        const char *month, *year, *threshold;
        QString monthBars, yearBars; // each after its chart's category
    };
    const Case cases[] = {
        {"3 - Март", "2005", "", march, year},
        {"", "", "abc", march, year}, // today's period, no limit
        {"3", "2005", "1000", "03.2005 Питание 1000 | Транспорт 12.34 | Аптека 1500>0",
         "2005 Питание 1005>0 | Транспорт 112.34 | Отпуск 50000>0 | Аптека 1500>0"},
        {"6", "2007", "-1", "06.2007 Питание -20", "2007 Питание -20"},
        {"12", "2005", "", "12.2005 Питание 5", year},
        {"abc", "2005", "", "abc.2005", year},
        {"0", "2005", "", "00.2005", year},
        {"3", "99", "", "03.99", "99"},
        {"1", "2006", "", "01.2006 Транспорт 8888", "2006 Транспорт 8888"},
    };
    for (const Case& c : cases) {
        const auto charts = ExpenseCharts::read(store, Period::choose(c.month, c.year, kToday),
                                                Threshold::fromField(c.threshold));
        ASSERT_TRUE(charts.has_value());
        const std::string where = std::string(c.month) + " / " + c.year;
        EXPECT_EQ((charts->month.category + " " + bars(charts->month)).trimmed().toStdString(),
                  c.monthBars.toStdString())
            << where;
        EXPECT_EQ((charts->year.category + " " + bars(charts->year)).trimmed().toStdString(),
                  c.yearBars.toStdString())
            << where;
        EXPECT_EQ(charts->month.hasExpenses(), c.monthBars.contains(' ')) << where;
    }
    // An account keeps its colour in both charts, and no two accounts share one.
    const auto charts = ExpenseCharts::read(store, Period::choose("3", "2005", kToday), Threshold());
    for (const charts::ChartBar& m : charts->month.bars)
        for (const charts::ChartBar& y : charts->year.bars)
            EXPECT_EQ(m.colourSlot == y.colourSlot, m.code == y.code) << m.code << " " << y.code;
}

// A file that cannot be read is reported by every reader, which gives nothing.
TEST(UnreadableFile, ChartsListsAndRecalculationReportItAndGiveNothing)
{
    ProgramFolder folder;
    RecordingSink sink;
    store::Store store(folder.path(), &sink);
    const Period march = Period::choose("3", "2005", kToday);
    EXPECT_FALSE(ExpenseCharts::read(store, march, Threshold()).has_value());
    EXPECT_FALSE(analytics::ChoiceLists::read(store).has_value());
    EXPECT_FALSE(analytics::Recalculation::read(store, march, std::nullopt).has_value());
    ASSERT_EQ(sink.messages.size(), 3);
    EXPECT_TRUE(sink.messages.front().contains(folder.dataFilePath())) << sink.messages.front().toStdString();
}
