#include "Household2005.h"
#include "ProgramFolder.h"

#include "analytics/ChoiceLists.h"
#include "analytics/DetailTableModel.h"
#include "analytics/Recalculation.h"
#include "analytics/YearTableModel.h"

#include <gtest/gtest.h>

using namespace velmora::test;
using namespace analytics;

namespace {

Period period(const char* month, const char* year)
{
    return Period::choose(QString::fromUtf8(month), QString::fromUtf8(year), QDate(2026, 3, 15));
}

// The rows as the grid shows them, cells joined by "|", then the first row's
// alignments ("<" left, ">" right).
std::vector<std::string> shown(const QAbstractItemModel& model)
{
    std::vector<std::string> lines;
    QString aligned;
    for (int r = 0; r < model.rowCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < model.columnCount(); ++c) {
            cells.append(model.index(r, c).data().toString());
            if (r == 0)
                aligned +=
                    model.index(r, c).data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight
                        ? '>'
                        : '<';
        }
        lines.push_back(cells.join(QLatin1Char('|')).toStdString());
    }
    lines.push_back(aligned.toStdString());
    return lines;
}

template <class Model, class Table> std::vector<std::string> shown(Table table)
{
    Model model;
    model.setTable(std::move(table));
    return shown(model);
}

class AnalyticsQueries : public ::testing::Test
{
protected:
    AnalyticsQueries() { m_folder.write(household2005().database()); }

    Recalculation read(const char* month, const char* year, std::optional<DetailRequest> details = {})
    {
        const auto result = Recalculation::read(m_store, period(month, year), details);
        return result ? *result : throw std::runtime_error("the household file could not be read");
    }
    std::vector<std::string> details(const char* month, const char* account = nullptr)
    {
        const DetailRequest request{account ? DetailKind::Expenses : DetailKind::Income,
                                    QString::fromUtf8(account ? account : "")};
        return shown<DetailTableModel>(*read(month, "2005", request).details);
    }

    ProgramFolder m_folder;
    store::Store m_store{m_folder.path()};
};

} // namespace

// Rows in code order (9 before 10, 1500 last), code 0 included, labels cut
// to 20 characters, the code missing from the catalogue and 2004 left out,
// the expense of the deleted purse counted.
TEST_F(AnalyticsQueries, YearTableByAccountCodeWithTotalsRow)
{
    EXPECT_EQ(
        shown<YearTableModel>(read("", "2005").yearTable),
        (std::vector<std::string>{
            "0 - Разное|10||||||||||||0 - Разное|10", "3 - Питание|||160,5||179,5||||||||3 - Питание|340",
            "9 - Транспорт|||5,25||||||||||9 - Транспорт|5,25",
            "10 - Коммунальные пл||||||||||||1000|10 - Коммунальные пл|1000",
            "1500 - Подарки|||||||||||250||1500 - Подарки|250",
            " -- ИТОГО -- |10|0|165,75|0|179,5|0|0|0|0|0|250|1000| -- ИТОГО -- |1605,25",
            "<>>>>>>>>>>>><>"}));
    for (const char* year : {"2026", "20x5", "2005-"})
        EXPECT_EQ(shown<YearTableModel>(read("3", year).yearTable).front(),
                  " -- ИТОГО -- |0|0|0|0|0|0|0|0|0|0|0|0| -- ИТОГО -- |0")
            << year;
    const YearTableModel model;
    QStringList headers;
    for (int c = 0; c < model.columnCount(); ++c)
        headers.append(model.headerData(c, Qt::Horizontal).toString());
    EXPECT_EQ(headers.join('|').toStdString(),
              "Счет|Январь|Февраль|Март|Апрель|Май|Июнь|Июль|Август|Сентябрь|"
              "Октябрь|Ноябрь|Декабрь|Счета|ИТОГО");
}

TEST_F(AnalyticsQueries, MonthAndYearTotals)
{
    // Withdrawals above deposits: a negative income. All expenses count,
    // the code missing from the catalogue included.
    for (const auto& [month, year, expected] : std::vector<std::tuple<const char*, const char*, QString>>{
             {"3 - Март", "2005", "-1000,5 -700,5 1164,75 2604,25"},
             {"11", "2005", "300 -700,5 250 2604,25"},
             {"12", "2005", "0 -700,5 1000 2604,25"},
             {"12", "2004", "10000 10000 0 777"},
             {"13", "2005", "0 -700,5 0 2604,25"},
             {"0", "2005", "0 -700,5 0 2604,25"},
             {"3", "двадцать", "0 0 0 0"}}) {
        const MonthTotals t = read(month, year).totals;
        EXPECT_EQ(QStringList({t.monthIncome.toDisplayString(), t.yearIncome.toDisplayString(),
                               t.monthExpenses.toDisplayString(), t.yearExpenses.toDisplayString()})
                      .join(' '),
                  expected)
            << month << " " << year;
    }
}

// Newest first; the expense paid from the deleted purse says so; an account
// entry is taken by its code.
TEST_F(AnalyticsQueries, DetailListsOfOneMonth)
{
    EXPECT_EQ(details("3"), (std::vector<std::string>{"15.03.2005|-6000,5|Снятие на ремонт|2",
                                                      "01.03.2005|5000|Зарплата|1", "<><>"}));
    EXPECT_EQ(details("3", "3 - Питание"),
              (std::vector<std::string>{"12.03.2005|40|Из удалённого кошелька|(кошелек удален)|3|",
                                        "10.03.2005|120,5|Продукты|Основной|2|рынок", "<><<><"}));
    EXPECT_EQ(details("11", "1500 - Подарки").front(), "15.11.2005|250|Книга|Основной|8|на день рождения");
    EXPECT_EQ(details("12", "10 - Ком").front(), "31.12.2005 23:00:00|1000|покупка|Основной|9|");
    // One day's operations by number; texts cut to what the list shows.
    const std::string cut = QString(100, u'й').toStdString();
    EXPECT_EQ(details("4"),
              (std::vector<std::string>{"07.04.2005|0|второй|7", "07.04.2005|0|" + cut + "|6", "<><>"}));
    EXPECT_EQ(details("4", "42").front(),
              "07.04.2005|0|" + cut + "|Основной|11|" + QString(100, u'ц').toStdString());
    for (const auto& [month, account] : std::vector<std::pair<const char*, const char*>>{
             {"6", nullptr}, {"13", nullptr}, {"0", nullptr}, {"4", "Основной"}})
        EXPECT_EQ(details(month, account).size(), 1u) << month;
    EXPECT_EQ(read("3", "2005", DetailRequest{DetailKind::Expenses, {}}).details->caption(), "Расход");
    // Nothing is read past the list's last row or column.
    struct Probe : DetailTableModel
    {
        using DetailTableModel::createIndex;
    } probe;
    probe.setTable(*read("3", "2005", DetailRequest{DetailKind::Income, {}}).details);
    EXPECT_FALSE(probe.data(probe.createIndex(2, 0)).isValid());
    EXPECT_FALSE(probe.data(probe.createIndex(0, 4)).isValid());
}

TEST_F(AnalyticsQueries, ChoiceListsAndMonthEntry)
{
    const auto lists = ChoiceLists::read(m_store);
    ASSERT_TRUE(lists.has_value());
    EXPECT_EQ(QStringList({lists->accounts.first(), lists->accounts.last(), lists->months.at(2)}),
              QStringList({"0 - Разное", "1500 - Подарки", "3 - Март"}));
    EXPECT_EQ(lists->accounts.size() + lists->months.size(), 18);
    // Years of the bank ledger only; the undated operation offers 2005, ahead of the rest.
    EXPECT_EQ(lists->years, (QStringList{"2005", "2004", "2005"}));
    EXPECT_EQ(monthEntry(m_store, period("11 - x", "2005")), QStringLiteral("11 - Ноябрь"));
    EXPECT_EQ(monthEntry(m_store, period("13", "2005")), std::nullopt);
}
