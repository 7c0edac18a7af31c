#pragma once

#include "store/Store.h"
#include "store/StoreResult.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace service {

// The catalogue of expense accounts (Bills_Dict): code and name. Codes are
// never reused; the expenses of an account (Bills.F2) keep its code whatever
// happens to the catalogue row.
class AccountCatalogue
{
public:
    static constexpr int kMaxNameLength = 255;

    explicit AccountCatalogue(store::Store& store) : m_store(store) {}

    // "3 - Питание" for every account, in code order; nullopt when the data
    // file could not be read (the store has said why).
    std::optional<QStringList> entries();
    // The account's name; "" when there is no such account.
    std::optional<QString> name(int code);
    // Keeps the code, so the account's expenses stay with it.
    store::StoreResult rename(int code, const QString& name);
    // Removes the catalogue row only: the account's expenses stay in Bills.
    store::StoreResult remove(int code);
    // Adds an account under the largest code + 1 (1 in an empty catalogue)
    // and returns that code.
    std::optional<int> add(const QString& name);

private:
    store::Store& m_store;
};

} // namespace service
