#include "LedgerFile.h"

#include "jet/Unicode.h"
#include "ledger/Bank.h"
#include "ledger/Expenses.h"
#include "ledger/PurseOperations.h"
#include "store/ColumnValues.h"
#include "store/Dates.h"
#include "store/JetDateText.h"
#include "store/StoreTexts.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <optional>

// Data files laid out as the old program's designer may have laid them out:
// every column in another kind it may hold, columns in another order, an
// extra column and an extra table. Each opens, takes a day's operations and
// is written back in its own kinds.
using namespace velmora::test;
using jet::Column;
using jet::ColumnType;

namespace {

struct Retyped
{
    const char16_t* table;
    const char16_t* column;
    Column kind;
};

struct Variant
{
    const char* name;
    std::vector<Retyped> columns;
    const char* refusal = nullptr;         // why the file cannot be used
    const char* dateFormat = "dd.MM.yyyy"; // how a date kept as text is written
    bool reshuffled = false; // columns in reverse order, an extra column in Bank, an extra table
    std::function<void(jet::Database&)> spoil = {};
};

Column kind(ColumnType type)
{
    return Column::ofType(u"", type);
}
Column text(int chars)
{
    return Column::text(u"", chars);
}

const std::u16string kAmounts[][2] = {
    {u"Bank", u"F2"}, {u"Bills", u"F3"}, {u"Purse", u"F1"}, {u"Tech", u"F2"}, {u"Cur", u"F1"}};
const std::u16string kDates[][2] = {{u"Bank", u"F1"}, {u"Bills", u"F1"}, {u"Tech", u"F3"}};

std::vector<Retyped> amountsAs(ColumnType type, std::vector<Retyped> more = {})
{
    for (const auto& [table, column] : kAmounts)
        more.push_back({table.c_str(), column.c_str(), kind(type)});
    return more;
}
std::vector<Retyped> datesAs(const Column& as, std::vector<Retyped> more = {})
{
    for (const auto& [table, column] : kDates)
        more.push_back({table.c_str(), column.c_str(), as});
    return more;
}

std::u16string dateText(jet::DateTime date, const char* format)
{
    const double whole = std::floor(date.days);
    const QDateTime when(QDate(1899, 12, 30).addDays(static_cast<qint64>(whole)),
                         QTime(0, 0).addSecs(static_cast<int>(std::lround((date.days - whole) * 86400))));
    return when.toString(QString::fromLatin1(format)).toStdU16String();
}

// A value of the prepared file's kind as a file of kind `to` holds it: the
// nearest binary amount, a date as text; Null where that kind cannot hold it.
jet::Value retyped(const jet::Value& value, const Column& to, const char* dateFormat)
{
    if (to.type == ColumnType::Currency || to.type == ColumnType::DateTime)
        return value;
    const auto* money = std::get_if<jet::Currency>(&value);
    if (money && to.type == ColumnType::Double)
        return money->units / 10000.0;
    if (money && to.type == ColumnType::Single)
        return static_cast<float>(money->units / 10000.0);
    if (const auto* date = std::get_if<jet::DateTime>(&value); date && to.type == ColumnType::Text)
        return dateText(*date, dateFormat);
    const bool number =
        to.type == ColumnType::Byte || to.type == ColumnType::Integer || to.type == ColumnType::Long;
    const bool text = to.type == ColumnType::Text || to.type == ColumnType::Memo;
    if ((number && std::holds_alternative<std::int32_t>(value)) ||
        (text && std::holds_alternative<std::u16string>(value)))
        return value;
    return jet::Null{};
}

void retype(jet::Database& db, const Retyped& change, const char* dateFormat)
{
    jet::Table& table = *db.table(change.table);
    const std::size_t i = *table.columnIndex(change.column);
    Column kind = change.kind;
    kind.name = change.column;
    table.columns[i] = kind;
    for (jet::Row& row : table.rows) {
        row[i] = retyped(row[i], kind, dateFormat);
        if (auto* amount =
                std::get_if<double>(&row[i])) // one binary step off, as sums of binary values leave it
            *amount = std::nextafter(*amount, 0.0);
    }
}

void reshuffle(jet::Database& db)
{
    for (jet::Table& table : db.tables) {
        std::ranges::reverse(table.columns);
        for (jet::Row& row : table.rows)
            std::ranges::reverse(row);
    }
    jet::Table& bank = *db.table(u"Bank");
    bank.columns.insert(bank.columns.begin() + 1, Column::text(u"Кто", 20));
    for (jet::Row& row : bank.rows)
        row.insert(row.begin() + 1, std::u16string(u"мама"));
    jet::Table notes;
    notes.name = u"Notes";
    notes.columns = {Column::ofType(u"N", ColumnType::Double), Column::text(u"What", 30)};
    notes.rows = {{0.1 + 0.2, std::u16string(u"заметка")}};
    db.tables.insert(db.tables.begin() + 2, notes);
}

} // namespace

// A file that cannot be used is refused naming the table, the column and what
// was expected, and is left as it was.
TEST(ColumnKinds, AFileOfAnyAcceptedKindsTakesADaysWorkAndKeepsItsKinds)
{
    const Variant variants[] = {
        {"Double amounts, Byte and Integer codes, Memo texts",
         amountsAs(ColumnType::Double, {{u"Bills", u"F2", kind(ColumnType::Byte)},
                                        {u"Bills", u"F6", kind(ColumnType::Integer)},
                                        {u"Bills_Dict", u"F0", kind(ColumnType::Integer)},
                                        {u"Purse", u"F0", kind(ColumnType::Byte)},
                                        {u"Purse_Dict", u"F0", kind(ColumnType::Integer)},
                                        {u"Mon", u"F0", kind(ColumnType::Byte)},
                                        {u"Bank", u"F3", kind(ColumnType::Memo)},
                                        {u"Bills", u"F4", kind(ColumnType::Memo)},
                                        {u"Purse_Dict", u"F1", kind(ColumnType::Memo)},
                                        {u"Tech", u"F0", kind(ColumnType::Memo)}})},
        {"Single amounts, dates as dd.mm.yyyy, plain Long operation numbers, reshuffled",
         amountsAs(ColumnType::Single, datesAs(text(10), {{u"Bank", u"F0", kind(ColumnType::Long)},
                                                          {u"Bills", u"F0", kind(ColumnType::Long)}})),
         nullptr, "dd.MM.yyyy", true},
        {"dates as yyyy-mm-dd with a time, Integer operation numbers, short texts, reshuffled",
         datesAs(text(19), {{u"Bank", u"F0", kind(ColumnType::Integer)},
                            {u"Bills", u"F0", kind(ColumnType::Integer)},
                            {u"Bank", u"F3", text(40)},
                            {u"Bills", u"F5", text(12)}}),
         nullptr, "yyyy-MM-dd HH:mm:ss", true},
        {"amount as text",
         {{u"Bank", u"F2", text(255)}},
         "F2 таблицы Bank хранится сумма, а он вида «текстовый (255 знаков)»; ожидается денежный, число с"},
        {"code as Double",
         {{u"Bills", u"F6", kind(ColumnType::Double)}},
         "F6 таблицы Bills хранится целое число, а он вида «число с плавающей точкой (8 байт)»; ожидается"},
        {"date in 9 characters",
         {{u"Bills", u"F1", text(9)}},
         "F1 таблицы Bills хранится дата, а он вида «текстовый (9 знаков)»; ожидается дата/время или текст"},
        {"text as Long",
         {{u"Purse_Dict", u"F1", kind(ColumnType::Long)}},
         "F1 таблицы Purse_Dict хранится текст, а он вида «длинное целое»; ожидается текстовый или MEMO"},
        {"no column",
         {},
         "в таблице Tech нет столбца F1, где хранится текст",
         "",
         false,
         [](jet::Database& db) {
             jet::Table& tech = *db.table(u"Tech");
             tech.columns.erase(tech.columns.begin() + 1);
             for (jet::Row& row : tech.rows)
                 row.erase(row.begin() + 1);
         }},
        {"no such date",
         {{u"Bank", u"F1", text(10)}},
         store::texts::causeValueNotAccepted,
         "dd.MM.yyyy",
         false,
         [](jet::Database& db) { db.table(u"Bank")->rows[0][1] = std::u16string(u"31.02.2026"); }},
    };
    const QDate day(2026, 3, 14);
    for (const Variant& v : variants) {
        SCOPED_TRACE(v.name);
        DataBuilder data;
        data.balance("1000").account(1, "Питание").purse(1, "Кошелек", "100");
        data.bank(QDate(2026, 3, 1), "12,35", "Старая");
        for (const Retyped& change : v.columns)
            retype(data.database(), change, v.dateFormat);
        if (v.reshuffled)
            reshuffle(data.database());
        if (v.spoil)
            v.spoil(data.database());
        const jet::Database original = data.database();
        LedgerFile file(data);
        const QByteArray before = file.folder().bytes();
        const auto deposit = ledger::Bank(file.store())
                                 .record({day, typed("50,5"), ledger::BankDirection::Deposit, "Зарплата"});
        if (v.refusal) {
            EXPECT_EQ(said(deposit), "not saved");
            ASSERT_EQ(file.sink.storeFailures.size(), 1);
            EXPECT_TRUE(file.sink.storeFailures[0].contains(file.folder().dataFilePath()));
            EXPECT_TRUE(file.sink.storeFailures[0].contains(QString::fromUtf8(v.refusal)))
                << file.sink.storeFailures[0].toStdString();
            EXPECT_EQ(file.folder().bytes(), before);
            continue;
        }
        EXPECT_EQ(said(deposit), "done");
        EXPECT_TRUE(ledger::Expenses(file.store()).book({day, 1, typed("12,35"), "Хлеб", "к чаю", 1}));
        EXPECT_EQ(
            said(ledger::PurseOperations(file.store()).move(1, typed("20"), ledger::PurseDirection::PutIn)),
            "done");
        EXPECT_TRUE(file.sink.messages.isEmpty()) << file.sink.messages.join('\n').toStdString();

        // Read anew: the noise of the old row is gone from the sum, not from the file.
        EXPECT_EQ(file.money("SELECT SUM(F2) FROM Bank"), "62.85");
        EXPECT_EQ(file.balance(), "1038.15");
        EXPECT_EQ(file.purse(1), "107.65");

        // Every table keeps its columns; rows no operation touched are as
        // they were, the extra table too; a written value is the nearest one
        // of its column's kind, a date in the file's own format.
        const jet::Database saved = file.folder().readDataFile();
        for (const jet::Table& table : original.tables) {
            const auto& columns = saved.table(table.name)->columns;
            EXPECT_TRUE(std::ranges::equal(columns, table.columns, [](const Column& a, const Column& b) {
                return a.name == b.name && a.type == b.type && a.length == b.length;
            })) << jet::toUtf8(table.name);
            for (const jet::Row& row : table.rows)
                EXPECT_TRUE(table.name == u"Tech" || table.name == u"Purse" ||
                            std::ranges::count(saved.table(table.name)->rows, row) == 1)
                    << jet::toUtf8(table.name);
        }
        const struct
        {
            const char16_t* table;
            const char16_t* keyColumn;
            jet::Value key;
            const char16_t* column;
            jet::Value written; // as the prepared file holds it
        } written[] = {
            {u"Bank", u"F3", std::u16string(u"Зарплата"), u"F0", std::int32_t{2}},
            {u"Bank", u"F3", std::u16string(u"Зарплата"), u"F1", store::toJetDate(day)},
            {u"Bank", u"F3", std::u16string(u"Зарплата"), u"F2", jet::Currency{505000}},
            {u"Bills", u"F4", std::u16string(u"Хлеб"), u"F2", std::int32_t{1}},
            {u"Bills", u"F4", std::u16string(u"Хлеб"), u"F5", std::u16string(u"к чаю")},
            {u"Tech", u"F0", std::u16string(u"OSTATOK"), u"F2", jet::Currency{10381500}},
            {u"Purse", u"F0", std::int32_t{1}, u"F1", jet::Currency{1076500}},
        };
        for (const auto& w : written) {
            const jet::Table& t = *saved.table(w.table);
            const std::size_t key = *t.columnIndex(w.keyColumn), column = *t.columnIndex(w.column);
            const auto row = std::ranges::find_if(t.rows, [&](const jet::Row& r) { return r[key] == w.key; });
            ASSERT_NE(row, t.rows.end()) << jet::toUtf8(w.table);
            EXPECT_EQ((*row)[column], retyped(w.written, t.columns[column], v.dateFormat))
                << jet::toUtf8(w.table) << "." << jet::toUtf8(w.column);
        }
    }
}

TEST(ColumnKinds, BinaryAmountsAndTextDatesReadAsAPersonSeesThemAndGoBackAsTheNearestValue)
{
    struct Case
    {
        double value;
        std::optional<std::int64_t> units;
    };
    for (const Case& c :
         {Case{12.349999999999998, 123500}, Case{0.00005, 1}, Case{-0.00005, 0}, Case{-0.00006, -1},
          Case{922337203685477.5, 9223372036854775000}, Case{922337203685478.0, std::nullopt},
          Case{1e15, std::nullopt}, Case{std::nan(""), std::nullopt}}) {
        EXPECT_EQ(store::values::unitsOfDouble(c.value), c.units) << c.value;
    }
    // The nearest Double to the exact amount, not one a step away.
    EXPECT_EQ(store::values::doubleOfUnits(123500), 12.35);
    EXPECT_EQ(store::values::doubleOfUnits(-1), -0.0001);
    EXPECT_EQ(store::values::unitsOfSingle(123456.78f), 1234567800);
    EXPECT_EQ(store::values::singleOfUnits(1234567800), 123456.78f);
    // A Single cannot hold every kopeck of a large amount: such an amount is not written at all.
    EXPECT_EQ(store::values::singleOfUnits(123456789100), std::nullopt);

    // Dates kept as text read in either order, with or without a time.
    const std::pair<const char16_t*, const char*> dates[] = {{u"5.3.2026", "2026-03-05"},
                                                             {u" 2026-03-05 ", "2026-03-05"},
                                                             {u"2026-3-5 9:05", "2026-03-05 09:05:00"},
                                                             {u"31.02.2026", nullptr},
                                                             {u"05.03.26", nullptr},
                                                             {u"2026-03-05T10:00:00", nullptr},
                                                             {u"05.03.2026 24:00", nullptr}};
    for (const auto& [text, iso] : dates) {
        const auto date = store::values::dateOfText(text);
        EXPECT_EQ(date ? store::jetDateToText(*date) : std::nullopt,
                  iso ? std::optional<std::string>(iso) : std::nullopt)
            << jet::toUtf8(text);
    }
    const jet::DateTime evening = *store::values::dateOfText(u"2026-03-05 18:30:00");
    EXPECT_EQ(store::values::textOfDate(evening, {true, false}), u"05.03.2026 18:30:00");
}
