#include "SqlFunctions.h"

#include "JetDateText.h"
#include "SqlSchema.h"

#include <QString>

#include <cstring>
#include <limits>
#include <sqlite3.h>
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
    sqlite3_create_function_v2(db, kIsStoredDate, 1, flags, nullptr, isStoredDateFunction, nullptr, nullptr,
                               nullptr);
    sqlite3_create_function_v2(db, "WideSum", 1, flags, nullptr, nullptr, wideSumStep, wideSumFinal, nullptr);
}

} // namespace store::sql
