#include "Error.h"

#include "Unicode.h"

namespace jet {

Error Error::inTable(const std::u16string& table) const
{
    Error named(m_code, std::string(what()) + " (table " + toUtf8(table) + ")", m_reason);
    named.at(table, m_column).counts(m_found, m_stated);
    return named;
}

} // namespace jet
