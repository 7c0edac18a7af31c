#pragma once

#include <QDate>

#include <functional>

namespace ui {

// Where "today" comes from: the computer's calendar in the program, a fixed
// day in tests.
using Clock = std::function<QDate()>;

QDate systemToday();

} // namespace ui
