#include "ColumnKinds.h"

#include "StoreTexts.h"

#include <QString>
#include <QStringList>

namespace store::kinds {

using jet::ColumnType;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QString kindName(const jet::Column& column)
{
    switch (column.type) {
    case ColumnType::Boolean:
        return text(texts::kindBoolean);
    case ColumnType::Byte:
        return text(texts::kindByte);
    case ColumnType::Integer:
        return text(texts::kindInteger);
    case ColumnType::Long:
        return text(texts::kindLong);
    case ColumnType::Currency:
        return text(texts::kindCurrency);
    case ColumnType::Single:
        return text(texts::kindSingle);
    case ColumnType::Double:
        return text(texts::kindDouble);
    case ColumnType::DateTime:
        return text(texts::kindDateTime);
    case ColumnType::Binary:
        return text(texts::kindBinary);
    case ColumnType::Text:
        return text(texts::kindText).arg(column.maxChars());
    case ColumnType::Ole:
        return text(texts::kindOle);
    case ColumnType::Memo:
        return text(texts::kindMemo);
    case ColumnType::Guid:
        return text(texts::kindGuid);
    case ColumnType::Numeric:
        return text(texts::kindDecimal);
    }
    return QString::number(static_cast<int>(column.type));
}

QString meaningName(Meaning meaning)
{
    switch (meaning) {
    case Meaning::Amount:
        return text(texts::meaningAmount);
    case Meaning::WholeNumber:
        return text(texts::meaningWholeNumber);
    case Meaning::Date:
        return text(texts::meaningDate);
    case Meaning::Text:
        return text(texts::meaningText);
    }
    return {};
}

QString acceptedKinds(Meaning meaning)
{
    const auto kind = [](ColumnType type) { return kindName(jet::Column::ofType(u"", type)); };
    QStringList names;
    switch (meaning) {
    case Meaning::Amount:
        names = {kind(ColumnType::Currency), kind(ColumnType::Double), kind(ColumnType::Single)};
        break;
    case Meaning::WholeNumber:
        names = {kind(ColumnType::Long), kind(ColumnType::Integer), kind(ColumnType::Byte)};
        break;
    case Meaning::Date:
        names = {kind(ColumnType::DateTime), text(texts::kindDateText).arg(kMinDateChars)};
        break;
    case Meaning::Text:
        names = {text(texts::kindTextAny), kind(ColumnType::Memo)};
        break;
    }
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + text(texts::kindsOr) + last;
}

const jet::Column* columnNamed(const jet::Table& table, const std::u16string& name)
{
    for (const jet::Column& column : table.columns)
        if (column.name == name)
            return &column;
    return nullptr;
}

} // namespace

Meaning meaningOf(const jet::Column& ours)
{
    switch (ours.type) {
    case ColumnType::Currency:
        return Meaning::Amount;
    case ColumnType::DateTime:
        return Meaning::Date;
    case ColumnType::Text:
    case ColumnType::Memo:
        return Meaning::Text;
    default:
        return Meaning::WholeNumber;
    }
}

bool accepts(Meaning meaning, const jet::Column& column)
{
    const ColumnType t = column.type;
    switch (meaning) {
    case Meaning::Amount:
        return t == ColumnType::Currency || t == ColumnType::Double || t == ColumnType::Single;
    case Meaning::WholeNumber:
        return t == ColumnType::Long || t == ColumnType::Integer || t == ColumnType::Byte;
    case Meaning::Date:
        return t == ColumnType::DateTime || (t == ColumnType::Text && column.maxChars() >= kMinDateChars);
    case Meaning::Text:
        return t == ColumnType::Text || t == ColumnType::Memo;
    }
    return false;
}

std::string tableRefusal(const jet::Table& ours, const jet::Table& actual)
{
    const QString table = QString::fromStdU16String(ours.name);
    for (const jet::Column& wanted : ours.columns) {
        const Meaning meaning = meaningOf(wanted);
        const QString name = QString::fromStdU16String(wanted.name);
        const jet::Column* found = columnNamed(actual, wanted.name);
        if (!found)
            return text(texts::schemaNoColumn).arg(table, name, meaningName(meaning)).toStdString();
        if (!accepts(meaning, *found))
            return text(texts::schemaWrongKind)
                .arg(table, name, meaningName(meaning), kindName(*found), acceptedKinds(meaning))
                .toStdString();
    }
    return {};
}

} // namespace store::kinds
