#pragma once

// Every text the program's shell shows: frame, sign-in, splash, help and the
// boxes of the start-up. The window layouts carry their own captions in the
// .ui files.
namespace app::texts {

inline constexpr char wrongPassword[] = "Введен неправильный пароль!";

inline constexpr char helpFileName[] = "velmora-help.html";
inline constexpr char helpTitle[] = "Справка Velmora";
inline constexpr char helpMissing[] = "Файл справки %1 не найден.";

// An exception that escaped an action; %1 is its cause as the code gave it.
inline constexpr char actionFailed[] = "Действие прервано из-за внутренней ошибки программы:\r\n%1\r\n\r\n"
                                       "Незавершённые изменения не записаны, работу можно продолжить.";
inline constexpr char actionFailedLog[] = "действие прервано из-за внутренней ошибки программы: %1";
inline constexpr char unknownCause[] = "неизвестная ошибка";

} // namespace app::texts
