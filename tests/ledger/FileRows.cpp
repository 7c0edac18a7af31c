#include "FileRows.h"
#include "ProgramFolder.h"

#include "jet/Reader.h"
#include "store/Amount.h"
#include "store/Dates.h"
#include "store/Schema.h"

#include <QDir>

#include <stdexcept>

namespace velmora::test {

namespace {

struct ValueText
{
    QString operator()(const jet::Null&) const { return QStringLiteral("NULL"); }
    QString operator()(bool value) const { return value ? QStringLiteral("true") : QStringLiteral("false"); }
    QString operator()(std::int32_t value) const { return QString::number(value); }
    QString operator()(const jet::Currency& value) const
    {
        return store::Amount::fromUnits(value.units).toPlainString();
    }
    QString operator()(float value) const { return QString::number(value); }
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

QStringList fileRows(const QString& programDir, const QString& table)
{
    const QByteArray bytes = contents(QDir(programDir).filePath(store::kDataFileName));
    const jet::Database db = jet::readDatabase(
        {reinterpret_cast<const std::uint8_t*>(bytes.constData()), static_cast<std::size_t>(bytes.size())},
        store::kFilePassword);
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

} // namespace velmora::test
