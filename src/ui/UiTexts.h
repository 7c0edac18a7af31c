#pragma once

// Titles every window's boxes share, and the log line format.
namespace ui::texts {

inline constexpr char appTitle[] = "Velmora";
inline constexpr char errorTitle[] = "Ошибка";
inline constexpr char informationTitle[] = "Информация";
inline constexpr char attentionTitle[] = "ВНИМАНИЕ!!!";

// Standard error lines: the program's name, then the message.
inline constexpr char logLine[] = "velmora: %1";

} // namespace ui::texts
