#pragma once

#include "store/CommonTexts.h"

// Titles every window's boxes share, and the log line format.
namespace ui::texts {

inline constexpr const char* appTitle = store::texts::productName;
using store::texts::errorTitle;
inline constexpr char informationTitle[] = "Информация";
inline constexpr char attentionTitle[] = "ВНИМАНИЕ!!!";

// Standard error lines: the program's name, then the message.
inline constexpr char logLine[] = "velmora: %1";

} // namespace ui::texts
