#pragma once

// Every text the program's shell shows: frame, sign-in, splash, help and the
// boxes of the start-up. The window layouts carry their own captions in the
// .ui files.
namespace app::texts {

inline constexpr char wrongPassword[] = "Введен неправильный пароль!";

inline constexpr char helpFileName[] = "velmora-help.html";
inline constexpr char helpTitle[] = "Справка Velmora";
inline constexpr char helpMissing[] = "Файл справки %1 не найден.";

} // namespace app::texts
