#pragma once

#include "store/StoreTexts.h"

// Texts that every window shows: the titles of their boxes, the mistakes of
// typing they share, and the log line format.
namespace ui::texts {

inline constexpr const char* appTitle = store::texts::productName;
inline constexpr char errorTitle[] = "Ошибка";
inline constexpr char informationTitle[] = "Информация";
inline constexpr char attentionTitle[] = "ВНИМАНИЕ!!!";

inline constexpr char mustBeNumber[] = "Необходимо вводить число!";
inline constexpr char mustBeValidDate[] = "Необходимо задать правильную дату операции!";
inline constexpr char changesSaved[] = "Изменеия успешно внесены";

// Standard error lines: the program's name, then the message.
inline constexpr char logLine[] = "velmora: %1";

} // namespace ui::texts
