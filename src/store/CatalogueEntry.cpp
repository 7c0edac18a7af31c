#include "CatalogueEntry.h"

namespace store {

namespace {

const QString kSeparator = QStringLiteral(" - ");
const QString kCodeEnd = QStringLiteral(" -");

} // namespace

QString CatalogueEntry::format(const QVariant& code, const QVariant& name)
{
    return code.toString() + kSeparator + name.toString();
}

QStringList CatalogueEntry::listOf(QuerySource& source, const QString& table)
{
    QStringList entries;
    for (const Row& row : source.query(QStringLiteral("SELECT F0, F1 FROM %1 ORDER BY F0").arg(table)))
        entries.append(format(row.value(0), row.value(1)));
    return entries;
}

QStringView CatalogueEntry::codePart(QStringView entry)
{
    const qsizetype end = entry.indexOf(kCodeEnd);
    return end < 0 ? entry : entry.left(end);
}

std::optional<int> CatalogueEntry::codeOf(QStringView entry)
{
    bool ok = false;
    const int code = codePart(entry).toInt(&ok);
    return ok ? std::optional(code) : std::nullopt;
}

} // namespace store
