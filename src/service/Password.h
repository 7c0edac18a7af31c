#pragma once

#include "store/Outcome.h"
#include "store/Store.h"

#include <QString>

#include <optional>

namespace service {

// The sign-in password: Tech row PW, column F1, kept as typed. No row means
// signing in without a password. A change counts from the next sign-in.
class Password
{
public:
    explicit Password(store::Store& store) : m_store(store) {}

    // "" when none is set; nullopt when the data file could not be read.
    std::optional<QString> current();
    // Replaces the password row by one holding `password`; one longer than
    // its column holds is refused.
    store::Outcome set(const QString& password);
    store::Outcome remove();

private:
    store::Store& m_store;
};

} // namespace service
