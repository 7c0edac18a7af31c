#include "LedgerFile.h"

#include "jet/Reader.h"
#include "store/Amount.h"
#include "store/Dates.h"
#include "store/RegularFile.h"
#include "store/Schema.h"

#include <QDir>

#include <stdexcept>

namespace velmora::test {

namespace {

// Currency units of a typed amount; throws when it is not one.
std::int64_t unitsOf(const QString& amount)
{
    const auto parsed = store::Amount::parse(amount);
    if (!parsed)
        throw std::invalid_argument("not an amount: " + amount.toStdString());
    return parsed->units();
}

jet::Value text(const QString& value)
{
    return value.toStdU16String();
}
jet::Value money(const QString& amount)
{
    return jet::Currency{unitsOf(amount)};
}
jet::Value code(int value)
{
    return std::int32_t{value};
}

jet::Value jetDateTime(const QDateTime& when)
{
    const double days = store::toJetDate(when.date()).days;
    return jet::DateTime{days + when.time().msecsSinceStartOfDay() / 86400000.0};
}

struct ValueText
{
    QString operator()(const jet::Null&) const { return QStringLiteral("NULL"); }
    QString operator()(bool value) const { return value ? QStringLiteral("true") : QStringLiteral("false"); }
    QString operator()(std::int32_t value) const { return QString::number(value); }
    QString operator()(const jet::Currency& value) const
    {
        return store::Amount::fromUnits(value.units).toPlainString();
    }
    QString operator()(double value) const { return QString::number(value); }
    QString operator()(const jet::DateTime& value) const
    {
        return store::fromJetDate(value).toString(Qt::ISODate);
    }
    QString operator()(const std::u16string& value) const { return QString::fromStdU16String(value); }
    QString operator()(const jet::Bytes&) const { return QStringLiteral("<bytes>"); }
    QString operator()(const jet::Guid&) const { return QStringLiteral("<guid>"); }
};

} // namespace

DataBuilder::DataBuilder() : m_db(store::preparedDatabase(store::toJetDate(QDate(2026, 1, 1)).days)) {}

jet::Table& DataBuilder::table(const char16_t* name)
{
    return *m_db.table(name);
}

DataBuilder& DataBuilder::password(const QString& password)
{
    table(u"Tech").rows.push_back({text("PW"), text(password), jet::Null{}, jet::Null{}});
    return *this;
}

DataBuilder& DataBuilder::balance(const QString& amount, bool extraRow)
{
    auto& rows = table(u"Tech").rows;
    if (extraRow) {
        rows.push_back({text("OSTATOK"), jet::Null{}, money(amount), jet::Null{}});
        return *this;
    }
    for (jet::Row& row : rows)
        if (row[0] == text("OSTATOK"))
            row[2] = money(amount);
    return *this;
}

DataBuilder& DataBuilder::withoutBalanceRow()
{
    std::erase_if(table(u"Tech").rows, [](const jet::Row& row) { return row[0] == text("OSTATOK"); });
    return *this;
}

DataBuilder& DataBuilder::account(int number, const QString& name)
{
    table(u"Bills_Dict").rows.push_back({code(number), text(name)});
    return *this;
}

DataBuilder& DataBuilder::purse(int number, const QString& name, const QString& amount)
{
    purseWithoutMoney(number, name);
    table(u"Purse").rows.push_back({code(number), money(amount)});
    return *this;
}

DataBuilder& DataBuilder::purseWithoutMoney(int number, const QString& name)
{
    table(u"Purse_Dict").rows.push_back({code(number), text(name), jet::Null{}, jet::Null{}});
    return *this;
}

DataBuilder& DataBuilder::bank(const QDateTime& when, const QString& amount, const QString& comment)
{
    jet::Table& bank = table(u"Bank");
    bank.rows.push_back({code(++bank.lastAutoNumber), jetDateTime(when), money(amount), text(comment)});
    return *this;
}

DataBuilder& DataBuilder::named(const QString& name, const QString& note)
{
    jet::Row& last = table(u"Bills").rows.back();
    last[4] = text(name);
    last[5] = text(note);
    return *this;
}

DataBuilder& DataBuilder::undatedBank(const QString& amount)
{
    jet::Table& bank = table(u"Bank");
    bank.rows.push_back({code(++bank.lastAutoNumber), jet::Null{}, money(amount), text({})});
    return *this;
}

DataBuilder& DataBuilder::billAt(const QDateTime& when, int account, const QString& amount, int purse)
{
    jet::Table& bills = table(u"Bills");
    bills.rows.push_back({code(++bills.lastAutoNumber), jetDateTime(when), code(account), money(amount),
                          text("покупка"), text({}), code(purse)});
    return *this;
}

QStringList fileRows(const QString& programDir, const QString& table)
{
    const QString file = QDir(programDir).filePath(store::kDataFileName);
    const jet::Database db =
        jet::readDatabase(store::readRegularFile(file.toStdString()).bytes, store::kFilePassword);
    const jet::Table* found = db.table(table.toStdU16String());
    if (!found)
        throw std::runtime_error("no table " + table.toStdString());
    QStringList rows;
    for (const jet::Row& row : found->rows) {
        QStringList values;
        for (const jet::Value& value : row)
            values.append(std::visit(ValueText{}, value));
        rows.append(values.join(QStringLiteral(" | ")));
    }
    return rows;
}

LedgerFile::LedgerFile(const DataBuilder& data)
{
    m_folder.write(data.database());
    m_store = std::make_unique<store::Store>(m_folder.path(), &sink);
}

QString LedgerFile::backupPath() const
{
    return QDir(m_folder.path()).filePath(store::kBackupFileName);
}

QStringList LedgerFile::rows(const QString& table)
{
    QStringList lines;
    for (const store::Row& row : store::rows(*m_store, table)) {
        QStringList values;
        for (int i = 0; i < row.size(); ++i)
            values.append(row.value(i).toString());
        lines.append(values.join(QLatin1Char('|')));
    }
    return lines;
}

std::string LedgerFile::money(const QString& sql, const QVariantList& params)
{
    // A store of its own reads what the file holds, not what memory holds.
    store::Store reader(m_folder.path());
    const store::Rows rows = query(reader, sql, params);
    if (rows.empty() || !rows.front().value(0).isValid())
        return "null";
    return rows.front().amount(0).toPlainString().toStdString();
}

} // namespace velmora::test
