#pragma once

#include "store/Outcome.h"
#include "store/Store.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace service {

// The catalogue of expense accounts (Bills_Dict): code and name. The expenses
// of an account (Bills.F2) keep its code: renaming keeps it, an account that
// still has expenses cannot be removed, and a code that expenses still name is
// never handed out again.
class AccountCatalogue
{
public:
    explicit AccountCatalogue(store::Store& store) : m_store(store) {}

    // "3 - Питание" for every account, in code order; nullopt when the data
    // file could not be read (the store has said why).
    std::optional<QStringList> entries();
    // The account's name; "" when there is no such account.
    std::optional<QString> name(int code);
    // Keeps the code, so the account's expenses stay with it. A name longer
    // than its column holds is refused, here and in add().
    store::Outcome rename(int code, const QString& name);
    // Removes the catalogue row of an account without expenses; an account
    // that still has expenses is refused, the message giving their number.
    store::Outcome remove(int code);
    // Adds an account under 1 + the largest code of the catalogue and of the
    // expenses, and returns that code.
    store::Result<int> add(const QString& name);

private:
    store::Store& m_store;
};

} // namespace service
