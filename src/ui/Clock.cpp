#include "Clock.h"

namespace ui {

QDate systemToday()
{
    return QDate::currentDate();
}

} // namespace ui
