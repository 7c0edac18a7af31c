#pragma once

#include "Table.h"

#include <cstddef>
#include <string>

// CannotWrite errors that name the table, column and row at fault, so that a
// failed save says exactly which value did not fit.
namespace jet::writer {

[[noreturn]] void failTable(const Table& table, const std::string& why);
[[noreturn]] void failColumn(const Table& table, const Column& column, const std::string& why);
// `row` counts from 0; the message counts from 1.
[[noreturn]] void failValue(const Table& table, const Column& column, std::size_t row,
                            const std::string& why);

} // namespace jet::writer
