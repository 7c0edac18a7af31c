#include "RowView.h"

#include "Dates.h"

#include <QStringDecoder>

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>
#include <string_view>

namespace store {

namespace {

// Past this many different texts in one query, new ones are no longer kept.
constexpr std::size_t kMaxKeptTexts = 4096;

std::string_view bytesOf(const SQLite::Column& cell)
{
    return std::string_view(cell.getText(), static_cast<std::size_t>(cell.getBytes()));
}

} // namespace

// QString::fromUtf8 drops a leading byte-order mark; a text may well start
// with U+FEFF and must come back with it.
QString RowView::textOf(std::string_view bytes) const
{
    if (const auto kept = m_texts.find(bytes); kept != m_texts.end())
        return kept->second;
    const QByteArrayView utf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QString text =
        utf8.startsWith("\xEF\xBB\xBF")
            ? QStringDecoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom).decode(utf8)
            : QString::fromUtf8(utf8);
    if (m_texts.size() < kMaxKeptTexts)
        m_texts.emplace(bytes, text);
    return text;
}

int RowView::size() const
{
    return m_statement.getColumnCount();
}

// qlonglong, double, QString, QByteArray or, for Null, an invalid QVariant.
QVariant RowView::value(int column) const
{
    const SQLite::Column cell = m_statement.getColumn(column);
    switch (cell.getType()) {
    case SQLITE_INTEGER:
        return QVariant(static_cast<qlonglong>(cell.getInt64()));
    case SQLITE_FLOAT:
        return QVariant(cell.getDouble());
    case SQLITE_TEXT:
        return QVariant(textOf(bytesOf(cell)));
    case SQLITE_BLOB:
        return QVariant(QByteArray(static_cast<const char*>(cell.getBlob()), cell.getBytes()));
    default:
        return QVariant();
    }
}

// The typed views take the usual kind of their column straight from SQLite
// and any other as Row would.
qlonglong RowView::integer(int column) const
{
    const SQLite::Column cell = m_statement.getColumn(column);
    if (cell.getType() == SQLITE_INTEGER)
        return cell.getInt64();
    return cell.isNull() ? 0 : value(column).toLongLong();
}

QString RowView::text(int column) const
{
    const SQLite::Column cell = m_statement.getColumn(column);
    if (cell.getType() == SQLITE_TEXT)
        return textOf(bytesOf(cell));
    return cell.isNull() ? QString() : value(column).toString();
}

Amount RowView::amount(int column) const
{
    const SQLite::Column cell = m_statement.getColumn(column);
    if (cell.getType() == SQLITE_INTEGER)
        return Amount::fromUnits(cell.getInt64());
    return Amount::fromStored(value(column));
}

QDate RowView::date(int column) const
{
    const SQLite::Column cell = m_statement.getColumn(column);
    if (cell.getType() != SQLITE_TEXT)
        return cell.isNull() ? QDate() : dateFromStored(value(column).toString());
    const std::string_view bytes = bytesOf(cell);
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
        names->append(QString::fromUtf8(m_statement.getColumnName(i)));
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
