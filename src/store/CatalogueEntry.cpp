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
