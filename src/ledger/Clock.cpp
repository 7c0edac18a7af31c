#include "Clock.h"

namespace ledger {

QDate systemToday()
{
    return QDate::currentDate();
}

} // namespace ledger
