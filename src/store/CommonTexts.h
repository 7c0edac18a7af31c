#pragma once

// Texts that several windows show, defined once. The subsystems' own texts
// headers name them next to their other texts.
namespace store::texts {

inline constexpr char productName[] = "Velmora";
inline constexpr char errorTitle[] = "Ошибка";
inline constexpr char mustBeNumber[] = "Необходимо вводить число!";
inline constexpr char mustBeValidDate[] = "Необходимо задать правильную дату операции!";
inline constexpr char changesSaved[] = "Изменеия успешно внесены";

} // namespace store::texts
