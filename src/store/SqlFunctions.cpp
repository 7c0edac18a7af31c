#include "SqlFunctions.h"

#include "JetDateText.h"
#include "SqlSchema.h"

#include <QDate>
#include <QString>

#include <cstring>
#include <limits>
#include <sqlite3.h>
#include <stdexcept>
#include <string_view>

namespace store::sql {

namespace {

int compareTexts(void*, int size1, const void* text1, int size2, const void* text2)
{
    if (size1 == size2 && std::memcmp(text1, text2, static_cast<std::size_t>(size1)) == 0)
        return 0;
    const QString a = QString::fromUtf8(static_cast<const char*>(text1), size1);
    const QString b = QString::fromUtf8(static_cast<const char*>(text2), size2);
    return a.compare(b, Qt::CaseInsensitive);
}

// Year, month, day and seconds of the day of a stored date text; false when
// the text is not one.
bool splitDate(std::string_view text, QDate& date, int& seconds)
{
    bool digits = true;
    auto number = [&](std::size_t at, std::size_t width) {
        int n = 0;
        for (std::size_t i = at; i < at + width; ++i) {
            digits = digits && text[i] >= '0' && text[i] <= '9';
            n = n * 10 + (text[i] - '0');
        }
        return n;
    };
    if (text.size() != 10 && text.size() != 19)
        return false;
    date = QDate(number(0, 4), number(5, 2), number(8, 2));
    seconds = text.size() == 19 ? number(11, 2) * 3600 + number(14, 2) * 60 + number(17, 2) : 0;
    return digits && date.isValid();
}

int datePart(std::string_view interval, QDate date, int seconds)
{
    if (interval == "yyyy")
        return date.year();
    if (interval == "q")
        return (date.month() + 2) / 3;
    if (interval == "m")
        return date.month();
    if (interval == "d")
        return date.day();
    if (interval == "y")
        return date.dayOfYear();
    if (interval == "w")
        return date.dayOfWeek() % 7 + 1;
    if (interval == "h")
        return seconds / 3600;
    if (interval == "n")
        return seconds / 60 % 60;
    if (interval == "s")
        return seconds % 60;
    throw std::invalid_argument("DatePart: unknown interval");
}

void datePartFunction(sqlite3_context* context, int, sqlite3_value** args)
{
    if (sqlite3_value_type(args[1]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    const auto* interval = reinterpret_cast<const char*>(sqlite3_value_text(args[0]));
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(args[1]));
    QDate date;
    int seconds = 0;
    if (!interval || !text || !splitDate(std::string_view(text, sqlite3_value_bytes(args[1])), date, seconds))
        return sqlite3_result_error(context, "DatePart: not a date", -1);
    try {
        sqlite3_result_int(context, datePart(interval, date, seconds));
    } catch (const std::invalid_argument& e) {
        sqlite3_result_error(context, e.what(), -1);
    }
}

void isStoredDateFunction(sqlite3_context* context, int, sqlite3_value** args)
{
    if (sqlite3_value_type(args[0]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(args[0]));
    const bool valid =
        sqlite3_value_type(args[0]) == SQLITE_TEXT && text &&
        jetDateFromText(std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(args[0]))))
            .has_value();
    sqlite3_result_int(context, valid ? 1 : 0);
}

// The running total of WideSum; SQLite hands it over zeroed and aligned for
// 8 bytes only, so the 128-bit units are copied in and out.
struct WideTotal
{
    unsigned char units[sizeof(__int128)];
    bool seen;

    __int128 value() const
    {
        __int128 v;
        std::memcpy(&v, units, sizeof v);
        return v;
    }
};

void wideSumStep(sqlite3_context* context, int, sqlite3_value** args)
{
    const int type = sqlite3_value_type(args[0]);
    if (type == SQLITE_NULL)
        return;
    if (type != SQLITE_INTEGER)
        return sqlite3_result_error(context, "WideSum: not a money value", -1);
    auto* total = static_cast<WideTotal*>(sqlite3_aggregate_context(context, sizeof(WideTotal)));
    if (!total)
        return sqlite3_result_error_nomem(context);
    const __int128 sum = total->value() + sqlite3_value_int64(args[0]);
    std::memcpy(total->units, &sum, sizeof sum);
    total->seen = true;
}

void wideSumFinal(sqlite3_context* context)
{
    const auto* total = static_cast<WideTotal*>(sqlite3_aggregate_context(context, 0));
    if (!total || !total->seen)
        return sqlite3_result_null(context);
    const __int128 units = total->value();
    if (units >= std::numeric_limits<std::int64_t>::min() &&
        units <= std::numeric_limits<std::int64_t>::max())
        return sqlite3_result_int64(context, static_cast<sqlite3_int64>(units));
    sqlite3_result_blob(context, &units, sizeof units, SQLITE_TRANSIENT);
}

} // namespace

void registerFunctions(sqlite3* db)
{
    sqlite3_create_collation_v2(db, kTextCollation, SQLITE_UTF8, nullptr, compareTexts, nullptr);
    constexpr int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    sqlite3_create_function_v2(db, "DatePart", 2, flags, nullptr, datePartFunction, nullptr, nullptr,
                               nullptr);
    sqlite3_create_function_v2(db, kIsStoredDate, 1, flags, nullptr, isStoredDateFunction, nullptr, nullptr,
                               nullptr);
    sqlite3_create_function_v2(db, "WideSum", 1, flags, nullptr, nullptr, wideSumStep, wideSumFinal, nullptr);
}

} // namespace store::sql
