#pragma once

#include "ui/UiTexts.h"

// Every text of the charts window, used by the window and its tests.
namespace charts::texts {

inline constexpr char windowTitle[] = "Velmora (диаграммы)";
inline constexpr char parametersFrame[] = "Параметры";
inline constexpr char monthLabel[] = "Месяц";
inline constexpr char yearLabel[] = "Год";
inline constexpr char excludeFrame[] = "Исключить";
inline constexpr const char* excludeButton = excludeFrame;
inline constexpr char thresholdLabel[] = "расходы >";
inline constexpr char monthChartFrame[] = "Диаграмма расходов по счетам ЗА МЕСЯЦ";
inline constexpr char yearChartFrame[] = "Диаграмма расходов по счетам ЗА ГОД";
inline constexpr char noExpenses[] = "РАСХОДОВ НЕ БЫЛО!!!";
inline constexpr char closeButton[] = "Закрыть";

// Shown, with the title "Ошибка", when the threshold is not a number.
using ui::texts::mustBeNumber;

// The money axis: whole roubles in Russian notation.
inline constexpr char valueAxisFormat[] = "%.0f";
inline constexpr char valueAxisTitle[] = "рублей";
// A bar's tooltip: account name, then the sum.
inline constexpr char barTooltip[] = "%1: %2";
// The tooltip of an account left out by the threshold: name, then its real sum.
inline constexpr char excludedBarTooltip[] = "%1: %2 — исключено (больше порога)";

} // namespace charts::texts
