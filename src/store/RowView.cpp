#include "RowView.h"

#include "Dates.h"

#include <QStringDecoder>

#include <sqlite3.h>
#include <string_view>

namespace store {

namespace {

// Past this many different texts in one query, new ones are no longer kept.
constexpr std::size_t kMaxKeptTexts = 4096;

// QString::fromUtf8 drops a leading byte-order mark; a text may well start
// with U+FEFF and must come back with it.
QString textOf(std::string_view bytes)
{
    const QByteArrayView utf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (!utf8.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(utf8);
    return QStringDecoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom).decode(utf8);
}

} // namespace

QString RowView::keptText(std::string_view bytes) const
{
    if (const auto kept = m_texts.find(bytes); kept != m_texts.end())
        return kept->second;
    QString text = textOf(bytes);
    if (m_texts.size() < kMaxKeptTexts)
        m_texts.emplace(bytes, text);
    return text;
}

int RowView::size() const
{
    return sqlite3_column_count(m_statement);
}

// The column's value as the statement holds it. Reading it through the value
// calls spares each read the statement's own checks, which cost more than the
// read at a million rows. The store's connections are used by one thread at a
// time (opened without SQLite's mutex), where such a value may be read freely.
sqlite3_value* RowView::cell(int column) const
{
    return sqlite3_column_value(m_statement, column);
}

// The text of the column as SQLite holds it, once its type is read.
std::string_view RowView::bytesOf(sqlite3_value* value)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

// qlonglong, double, QString, QByteArray or, for Null, an invalid QVariant.
QVariant RowView::value(int column) const
{
    sqlite3_value* const held = cell(column);
    switch (sqlite3_value_type(held)) {
    case SQLITE_INTEGER:
        return QVariant(static_cast<qlonglong>(sqlite3_value_int64(held)));
    case SQLITE_FLOAT:
        return QVariant(sqlite3_value_double(held));
    case SQLITE_TEXT:
        return QVariant(textOf(bytesOf(held)));
    case SQLITE_BLOB: {
        const auto* blob = static_cast<const char*>(sqlite3_value_blob(held));
        return QVariant(QByteArray(blob, sqlite3_value_bytes(held)));
    }
    default:
        return QVariant();
    }
}

// The typed views take the usual kind of their column straight from SQLite
// and any other as Row would.
qlonglong RowView::integer(int column) const
{
    sqlite3_value* const held = cell(column);
    const int kind = sqlite3_value_type(held);
    if (kind == SQLITE_INTEGER)
        return sqlite3_value_int64(held);
    return kind == SQLITE_NULL ? 0 : value(column).toLongLong();
}

QString RowView::text(int column) const
{
    sqlite3_value* const held = cell(column);
    const int kind = sqlite3_value_type(held);
    if (kind == SQLITE_TEXT)
        return keptText(bytesOf(held));
    return kind == SQLITE_NULL ? QString() : value(column).toString();
}

Amount RowView::amount(int column) const
{
    sqlite3_value* const held = cell(column);
    if (sqlite3_value_type(held) == SQLITE_INTEGER)
        return Amount::fromUnits(sqlite3_value_int64(held));
    return Amount::fromStored(value(column));
}

QDate RowView::date(int column) const
{
    sqlite3_value* const held = cell(column);
    const int kind = sqlite3_value_type(held);
    if (kind != SQLITE_TEXT)
        return kind == SQLITE_NULL ? QDate() : dateFromStored(value(column).toString());
    const std::string_view bytes = bytesOf(held);
    if (bytes != m_lastDateText) {
        m_lastDateText = bytes;
        m_lastDate = dateFromStored(bytes);
    }
    return m_lastDate;
}

std::shared_ptr<const QStringList> RowView::columnNames() const
{
    auto names = std::make_shared<QStringList>();
    for (int i = 0; i < size(); ++i)
        names->append(QString::fromUtf8(sqlite3_column_name(m_statement, i)));
    return names;
}

Row RowView::toRow(std::shared_ptr<const QStringList> names) const
{
    std::vector<QVariant> values;
    values.reserve(static_cast<std::size_t>(size()));
    for (int i = 0; i < size(); ++i)
        values.push_back(value(i));
    return Row(std::move(names), std::move(values));
}

} // namespace store
