#pragma once

#include <QString>

// What the main window's operations share.
namespace ledger::tables {

// Texts of the catalogue and operation columns hold at most 255 characters; a
// longer answer of an input box is cut there, as a field with that limit
// would have stopped the typing. A character pair is never split.
inline constexpr int kTextLength = 255;
QString fitText(const QString& text);

} // namespace ledger::tables
