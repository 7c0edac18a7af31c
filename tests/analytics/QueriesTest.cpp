#include "Household2005.h"
#include "ProgramFolder.h"
#include "support/RecordingSink.h"

#include "analytics/ChoiceLists.h"
#include "analytics/Recalculation.h"
#include "store/Transaction.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using analytics::DetailKind;
using analytics::DetailRequest;
using analytics::Period;

namespace {

const QDate kToday(2026, 3, 15);

Period period(const char* month, const char* year)
{
    return Period::choose(QString::fromUtf8(month), QString::fromUtf8(year), kToday);
}

// "label | Jan ... Dec | total", "." for a month without expenses.
std::vector<std::string> rendered(const analytics::YearTable& table)
{
    std::vector<std::string> lines;
    for (const analytics::YearTableRow& row : table.rows) {
        QString line = row.account + QStringLiteral(" |");
        for (const auto& month : row.months)
            line += QLatin1Char(' ') + (month ? month->toDisplayString() : QStringLiteral("."));
        lines.push_back((line + QStringLiteral(" | ") + row.total.toDisplayString()).toStdString());
    }
    return lines;
}

std::vector<std::string> rendered(const analytics::DetailTable& table)
{
    std::vector<std::string> lines;
    for (const analytics::DetailRow& row : table.rows)
        lines.push_back(table.cells(row).join(QStringLiteral(" | ")).toStdString());
    return lines;
}

class AnalyticsQueries : public ::testing::Test
{
protected:
    AnalyticsQueries() { m_folder.write(household2005().database()); }

    analytics::Recalculation read(const Period& p, std::optional<DetailRequest> details = std::nullopt)
    {
        auto result = analytics::Recalculation::read(m_store, p, details);
        if (!result)
            throw std::runtime_error("the household file could not be read");
        return *result;
    }

    ProgramFolder m_folder;
    store::Store m_store{m_folder.path()};
};

} // namespace

TEST_F(AnalyticsQueries, YearTableByAccountCodeWithTotalsRow)
{
    // Rows in code order (9 before 10, 1500 last), code 0 included, the
    // 20-character labels, March and May only for "Питание", the code missing
    // from the catalogue left out, 2004 left out, the expense of the deleted
    // purse counted.
    const std::vector<std::string> expected = {
        "0 - Разное | 10 . . . . . . . . . . . | 10",
        "3 - Питание | . . 160,5 . 179,5 . . . . . . . | 340",
        "9 - Транспорт | . . 5,25 . . . . . . . . . | 5,25",
        "10 - Коммунальные пл | . . . . . . . . . . . 1000 | 1000",
        "1500 - Подарки | . . . . . . . . . . 250 . | 250",
        " -- ИТОГО --  | 10 0 165,75 0 179,5 0 0 0 0 0 250 1000 | 1605,25",
    };
    EXPECT_EQ(rendered(read(period("", "2005")).yearTable), expected);
    EXPECT_EQ(rendered(read(period("", "2004")).yearTable),
              (std::vector<std::string>{"3 - Питание | . . 777 . . . . . . . . . | 777",
                                        " -- ИТОГО --  | 0 0 777 0 0 0 0 0 0 0 0 0 | 777"}));
}

TEST_F(AnalyticsQueries, YearWithoutExpensesOrNoYearAtAllGivesTotalsRowOnly)
{
    const std::vector<std::string> totalsOnly = {" -- ИТОГО --  | 0 0 0 0 0 0 0 0 0 0 0 0 | 0"};
    for (const char* year : {"2026", "1999", "20x5", "", "2005-"})
        EXPECT_EQ(rendered(read(period("3", year)).yearTable), totalsOnly) << year;
}

TEST_F(AnalyticsQueries, MonthAndYearTotals)
{
    struct Case
    {
        const char* month;
        const char* year;
        const char* monthIncome;
        const char* yearIncome;
        const char* monthExpenses;
        const char* yearExpenses;
    };
    for (const Case& c : {
             // Withdrawals above deposits: a negative income. All expenses
             // count, the code missing from the catalogue included.
             Case{"3 - Март", "2005", "-1000,5", "-700,5", "1164,75", "2604,25"},
             Case{"11", "2005", "300", "-700,5", "250", "2604,25"},
             Case{"2", "2005", "0", "-700,5", "0", "2604,25"},
             Case{"12", "2005", "0", "-700,5", "1000", "2604,25"},
             Case{"12", "2004", "10000", "10000", "0", "777"},
             Case{"13", "2005", "0", "-700,5", "0", "2604,25"},
             Case{"3", "двадцать", "0", "0", "0", "0"},
         }) {
        const analytics::MonthTotals t = read(period(c.month, c.year)).totals;
        const std::string where = std::string(c.month) + " " + c.year;
        EXPECT_EQ(t.monthIncome.toDisplayString(), QString::fromUtf8(c.monthIncome)) << where;
        EXPECT_EQ(t.yearIncome.toDisplayString(), QString::fromUtf8(c.yearIncome)) << where;
        EXPECT_EQ(t.monthExpenses.toDisplayString(), QString::fromUtf8(c.monthExpenses)) << where;
        EXPECT_EQ(t.yearExpenses.toDisplayString(), QString::fromUtf8(c.yearExpenses)) << where;
    }
}

TEST_F(AnalyticsQueries, DetailListsNewestFirst)
{
    const auto income = read(period("3", "2005"), DetailRequest{DetailKind::Income, {}}).details;
    ASSERT_TRUE(income.has_value());
    EXPECT_EQ(income->caption(), QStringLiteral("Приход"));
    EXPECT_EQ(rendered(*income), (std::vector<std::string>{"15.03.2005 | -6000,5 | Снятие на ремонт | 2",
                                                           "01.03.2005 | 5000 | Зарплата | 1"}));
    // The expense paid from the deleted purse is listed with the purse shown
    // as deleted; other accounts are not.
    const auto food =
        read(period("3", "2005"), DetailRequest{DetailKind::Expenses, QStringLiteral("3 - Питание")}).details;
    ASSERT_TRUE(food.has_value());
    EXPECT_EQ(food->caption(), QStringLiteral("Расход"));
    EXPECT_EQ(rendered(*food),
              (std::vector<std::string>{"12.03.2005 | 40 | Из удалённого кошелька | (кошелек удален) | 3 | ",
                                        "10.03.2005 | 120,5 | Продукты | Основной | 2 | рынок"}));
    const auto gifts =
        read(period("11", "2005"), DetailRequest{DetailKind::Expenses, QStringLiteral("1500 - Подарки")})
            .details;
    EXPECT_EQ(rendered(*gifts),
              (std::vector<std::string>{"15.11.2005 | 250 | Книга | Основной | 8 | на день рождения"}));
    const auto december =
        read(period("12", "2005"), DetailRequest{DetailKind::Expenses, QStringLiteral("10 - Ком")}).details;
    EXPECT_EQ(rendered(*december),
              (std::vector<std::string>{"31.12.2005 23:00:00 | 1000 | покупка | Основной | 9 | "}));
    for (const Period& none : {period("4", "2005"), period("13", "2005"), period("3", "x")})
        EXPECT_TRUE(read(none, DetailRequest{DetailKind::Income, {}}).details->rows.empty());
}

TEST(AnalyticsDetails, TextsCutToTheListsWidthAndSameDayByNumber)
{
    DataBuilder data;
    const QString longComment = QStringLiteral("й").repeated(255);
    data.purse(1, "Основной", "0").account(4, "Дом");
    data.bank(QDate(2005, 3, 7), "1", longComment).bank(QDate(2005, 3, 7), "2", "второй");
    data.bill(QDate(2005, 3, 7), 4, "3");
    nameLastBill(data, longComment, QStringLiteral("ц").repeated(150));
    ProgramFolder folder;
    folder.write(data.database());
    store::Store store(folder.path());
    const Period march = Period::choose(QStringLiteral("3"), QStringLiteral("2005"), QDate(2026, 1, 1));
    store::Transaction tx(store);
    const auto income = analytics::DetailTable::income(tx, march);
    ASSERT_EQ(income.rows.size(), 2u);
    EXPECT_EQ(income.rows[0].number, 2);
    EXPECT_EQ(income.rows[1].comment, QStringLiteral("й").repeated(100));
    const auto bills = analytics::DetailTable::expenses(tx, march, QStringLiteral("4 - Дом"));
    ASSERT_EQ(bills.rows.size(), 1u);
    EXPECT_EQ(bills.rows[0].comment.size(), 100);
    EXPECT_EQ(bills.rows[0].note.size(), 100);
    EXPECT_TRUE(analytics::DetailTable::expenses(tx, march, QStringLiteral("Дом")).rows.empty());
    EXPECT_TRUE(tx.commit());
}

TEST_F(AnalyticsQueries, ChoiceListsAndMonthEntry)
{
    const auto lists = analytics::ChoiceLists::read(m_store);
    ASSERT_TRUE(lists.has_value());
    EXPECT_EQ(lists->accounts.first(), QStringLiteral("0 - Разное"));
    EXPECT_EQ(lists->accounts.last(), QStringLiteral("1500 - Подарки"));
    EXPECT_EQ(lists->accounts.size(), 6);
    EXPECT_EQ(lists->months.size(), 12);
    EXPECT_EQ(lists->months.at(2), QStringLiteral("3 - Март"));
    // Years of the bank ledger only; the undated operation offers 2005, ahead of the rest.
    EXPECT_EQ(lists->years, (QStringList{"2005", "2004", "2005"}));
    EXPECT_EQ(analytics::monthEntry(m_store, period("11 - x", "2005")), QStringLiteral("11 - Ноябрь"));
    EXPECT_EQ(analytics::monthEntry(m_store, period("13", "2005")), std::nullopt);
}

TEST(AnalyticsQueriesFailure, MissingFileIsReportedAndGivesNothing)
{
    ProgramFolder folder;
    RecordingSink sink;
    store::Store store(folder.path(), &sink);
    EXPECT_FALSE(analytics::ChoiceLists::read(store).has_value());
    EXPECT_FALSE(analytics::Recalculation::read(store, period("3", "2005"), std::nullopt).has_value());
    EXPECT_EQ(sink.messages.size(), 2);
}
