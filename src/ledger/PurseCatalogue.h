#pragma once

#include "store/Amount.h"
#include "store/Outcome.h"
#include "store/Store.h"

#include <QString>

#include <optional>

namespace ledger {

// A purse as the window opens it for editing.
struct PurseCard
{
    QString name;
    QString note;
    // Nullopt when the purse has no Purse row.
    std::optional<store::Amount> balance;
};

// The catalogue of purses (Purse_Dict) and their rows of money (Purse).
// Codes are whole numbers; a new purse gets 1 + the largest code of the
// catalogue, of the money rows and of the expenses paid from a purse, so it
// never takes over the expenses of a deleted one. A name or note longer than
// its column holds is refused.
class PurseCatalogue
{
public:
    explicit PurseCatalogue(store::Store& store) : m_store(store) {}

    // Name, note and balance of purse `code`; empty texts for a purse that is
    // not in the catalogue. Nullopt when the file could not be read.
    std::optional<PurseCard> open(int code);
    // Stores a new name and note under the same code, so expenses keep
    // pointing at the purse.
    store::Outcome rename(int code, const QString& name, const QString& note);
    // Removes the purse and its money row. Its expenses stay, and so does the
    // stored balance: the purse's money counts as the bank's again, which is
    // refused when that puts the bank's figure out of range.
    store::Outcome remove(int code);
    // A new purse holding 0; its code.
    store::Result<int> create(const QString& name);

private:
    store::Store& m_store;
};

} // namespace ledger
