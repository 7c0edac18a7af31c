#include "LedgerTables.h"

namespace ledger::tables {

QString fitText(const QString& text)
{
    if (text.size() <= kTextLength)
        return text;
    const bool splitsPair = text.at(kTextLength - 1).isHighSurrogate();
    return text.left(splitsPair ? kTextLength - 1 : kTextLength);
}

} // namespace ledger::tables
