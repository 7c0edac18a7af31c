#include "charts/ExpenseCharts.h"
#include "DataBuilder.h"
#include "ProgramFolder.h"
#include "store/Store.h"
#include "support/RecordingSink.h"

#include <gtest/gtest.h>

#include <string>

using namespace velmora::test;
using analytics::Period;
using charts::ExpenseCharts;
using charts::Threshold;

namespace {

const QDate kToday(2005, 3, 20);

// Four accounts whose codes sort otherwise as texts ("10 - …" before "2 - …"),
// expenses in March 2005 and around it, one against a code the catalogue lacks.
jet::Database household()
{
    DataBuilder data;
    data.account(1, "Питание")
        .account(2, "Транспорт")
        .account(10, "Аптека")
        .account(4, "Отпуск")
        .bill(QDate(2005, 3, 1), 1, "600")
        .billAt(QDateTime(QDate(2005, 3, 31), QTime(23, 59)), 1, "400")
        .bill(QDate(2005, 3, 5), 10, "1500")
        .bill(QDate(2005, 3, 7), 2, "12,34")
        .bill(QDate(2005, 3, 8), 99, "777")
        .bill(QDate(2005, 2, 28), 2, "100")
        .billAt(QDateTime(QDate(2005, 4, 1), QTime(0, 0)), 4, "50000")
        .bill(QDate(2005, 12, 31), 1, "5")
        .bill(QDate(2004, 3, 10), 1, "9999")
        .bill(QDate(2006, 1, 1), 2, "8888")
        .bill(QDate(2007, 6, 1), 1, "-20");
    return data.database();
}

struct Bar
{
    qlonglong code;
    const char* name;
    const char* sum;
    bool excluded;
};

void expectBars(const charts::ChartData& data, std::initializer_list<Bar> expected, const std::string& where)
{
    ASSERT_EQ(data.bars.size(), expected.size()) << where;
    auto bar = data.bars.begin();
    for (const Bar& e : expected) {
        EXPECT_EQ(bar->code, e.code) << where;
        EXPECT_EQ(bar->name.toStdString(), e.name) << where;
        EXPECT_EQ(bar->sum.toPlainString().toStdString(), e.sum) << where;
        EXPECT_EQ(bar->excluded, e.excluded) << where;
        EXPECT_EQ(bar->value().toPlainString().toStdString(), e.excluded ? "0" : e.sum) << where;
        ++bar;
    }
}

class ExpenseChartsTest : public ::testing::Test
{
protected:
    void SetUp() override { m_folder.write(household()); }

    ExpenseCharts read(const QString& month, const QString& year, const QString& threshold = {})
    {
        const auto charts = ExpenseCharts::read(m_store, Period::choose(month, year, kToday),
                                                Threshold::fromField(threshold));
        EXPECT_TRUE(charts.has_value());
        return charts.value_or(ExpenseCharts{});
    }

    ProgramFolder m_folder;
    store::Store m_store{m_folder.path()};
};

} // namespace

TEST_F(ExpenseChartsTest, MonthAndYearBarsInAccountCodeOrder)
{
    const ExpenseCharts charts = read("3 - Март", "2005");
    EXPECT_EQ(charts.month.category, "03.2005");
    expectBars(
        charts.month,
        {{1, "Питание", "1000", false}, {2, "Транспорт", "12.34", false}, {10, "Аптека", "1500", false}},
        "month");
    EXPECT_EQ(charts.year.category, "2005");
    expectBars(charts.year,
               {{1, "Питание", "1005", false},
                {2, "Транспорт", "112.34", false},
                {4, "Отпуск", "50000", false},
                {10, "Аптека", "1500", false}},
               "year");
    // Every account keeps its colour in both charts, and no two accounts share one.
    for (const charts::ChartBar& monthBar : charts.month.bars)
        for (const charts::ChartBar& yearBar : charts.year.bars)
            EXPECT_EQ(monthBar.colourSlot == yearBar.colourSlot, monthBar.code == yearBar.code)
                << monthBar.code << " " << yearBar.code;
}

TEST_F(ExpenseChartsTest, ThresholdZeroesAccountsStrictlyAbove)
{
    const ExpenseCharts charts = read("3", "2005", "1000");
    expectBars(
        charts.month,
        {{1, "Питание", "1000", false}, {2, "Транспорт", "12.34", false}, {10, "Аптека", "1500", true}},
        "month at 1000");
    expectBars(charts.year,
               {{1, "Питание", "1005", true},
                {2, "Транспорт", "112.34", false},
                {4, "Отпуск", "50000", true},
                {10, "Аптека", "1500", true}},
               "year at 1000");
    expectBars(read("6", "2007", "-1").month, {{1, "Питание", "-20", false}},
               "a refund below a negative limit");
}

TEST(Threshold, TypedNumbersOrNoLimit)
{
    struct Case
    {
        const char* typed;
        const char* limit;
        bool rejected;
    };
    for (const Case& c :
         {Case{"", "100000000", false}, Case{"1000,5", "1000.5", false}, Case{"-3.25", "-3.25", false},
          Case{"abc", "100000000", true}, Case{" ", "100000000", true}, Case{"1 000", "100000000", true},
          Case{"10e3", "100000000", true}}) {
        const Threshold threshold = Threshold::fromField(c.typed);
        EXPECT_EQ(threshold.value().toPlainString().toStdString(), c.limit) << c.typed;
        EXPECT_EQ(threshold.wasRejected(), c.rejected) << c.typed;
    }
}

TEST_F(ExpenseChartsTest, FieldsChooseThePeriod)
{
    struct Case
    {
        const char* month;
        const char* year;
        const char* monthCategory;
        const char* yearCategory;
        int monthBars;
        int yearBars;
    };
    for (const Case& c : {
             Case{"3 - Март", "2005", "03.2005", "2005", 3, 4},
             Case{"3", "2005", "03.2005", "2005", 3, 4},
             Case{"", "", "03.2005", "2005", 3, 4}, // today's month and year
             Case{"12", "2005", "12.2005", "2005", 1, 4},
             Case{"abc", "2005", "abc.2005", "2005", 0, 4}, // no month: only the year is drawn
             Case{"13", "2005", "13.2005", "2005", 0, 4},
             Case{"3", "abc", "03.abc", "abc", 0, 0},
             Case{"1", "2006", "01.2006", "2006", 1, 1},
         }) {
        const std::string where = std::string(c.month) + " / " + c.year;
        const ExpenseCharts charts = read(c.month, c.year);
        EXPECT_EQ(charts.month.category.toStdString(), c.monthCategory) << where;
        EXPECT_EQ(charts.year.category.toStdString(), c.yearCategory) << where;
        EXPECT_EQ(charts.month.bars.size(), static_cast<std::size_t>(c.monthBars)) << where;
        EXPECT_EQ(charts.month.hasExpenses(), c.monthBars > 0) << where;
        EXPECT_EQ(charts.year.bars.size(), static_cast<std::size_t>(c.yearBars)) << where;
    }
}

TEST(ExpenseCharts, UnreadableFileIsReportedAndGivesNothing)
{
    ProgramFolder folder;
    RecordingSink sink;
    store::Store store(folder.path(), &sink);
    EXPECT_FALSE(ExpenseCharts::read(store, Period::choose("3", "2005", kToday), Threshold()).has_value());
    ASSERT_EQ(sink.messages.size(), 1);
    EXPECT_TRUE(sink.messages.front().contains(folder.dataFilePath())) << sink.messages.front().toStdString();
}
