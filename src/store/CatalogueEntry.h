#pragma once

#include "QuerySource.h"

#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <optional>

namespace store {

// How purses, expense accounts and months are listed: the code, " - " and the
// name ("3 - Питание"), and the code taken back out of an entry that was
// chosen, typed or pasted. Reading an entry never throws, whatever the text.
class CatalogueEntry
{
public:
    static QString format(const QVariant& code, const QVariant& name);
    // Every entry of a catalogue (Bills_Dict, Purse_Dict, Mon: code F0, name
    // F1), in code order.
    static QStringList listOf(QuerySource& source, const QString& table);

    // The text before the first " -"; the whole text when there is none.
    static QStringView codePart(QStringView entry);
    // The code of an entry: its code part as a whole number of the code
    // columns' range, blanks around it allowed. Nullopt for anything else.
    static std::optional<int> codeOf(QStringView entry);
};

} // namespace store
