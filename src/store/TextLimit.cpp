#include "TextLimit.h"

#include "Schema.h"
#include "StoreTexts.h"

#include <cstring>

namespace store {

namespace {

// What the user calls the texts of the columns that operations write.
struct Caption
{
    const char* table;
    const char* column;
    const char* caption;
};

const Caption kCaptions[] = {
    {"Bank", "F3", texts::bankComment},     {"Bills", "F4", texts::expenseName},
    {"Bills", "F5", texts::expenseNote},    {"Bills_Dict", "F1", texts::accountName},
    {"Purse_Dict", "F1", texts::purseName}, {"Purse_Dict", "F3", texts::purseNote},
    {"Tech", "F1", texts::password},
};

const char* captionOf(const char* table, const char* column)
{
    for (const Caption& c : kCaptions)
        if (std::strcmp(c.table, table) == 0 && std::strcmp(c.column, column) == 0)
            return c.caption;
    return texts::anyText;
}

} // namespace

int textLimit(const char* table, const char* column)
{
    static const std::vector<jet::Table> tables = schemaTables();
    const std::u16string tableName = QString::fromLatin1(table).toStdU16String();
    const std::u16string columnName = QString::fromLatin1(column).toStdU16String();
    for (const jet::Table& t : tables)
        for (const jet::Column& c : t.columns)
            if (t.name == tableName && c.name == columnName && c.type == jet::ColumnType::Text)
                return c.maxChars();
    return 0;
}

std::optional<Outcome> refuseTooLong(std::initializer_list<TextValue> values)
{
    for (const TextValue& value : values) {
        const int limit = textLimit(value.table, value.column);
        if (value.text.size() > limit)
            return Outcome::refused(QString::fromUtf8(texts::textTooLong)
                                        .arg(QString::fromUtf8(captionOf(value.table, value.column)))
                                        .arg(limit));
    }
    return std::nullopt;
}

} // namespace store
