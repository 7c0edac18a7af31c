#include "WriteFailure.h"

#include "Error.h"
#include "Unicode.h"

namespace jet::writer {

namespace {

std::string quoted(const std::u16string& name)
{
    return "\"" + toUtf8(name) + "\"";
}

} // namespace

void failTable(const Table& table, const std::string& why)
{
    Error error(ErrorCode::CannotWrite, "Cannot write table " + quoted(table.name) + ": " + why,
                Reason::ValueDoesNotFit);
    throw error.at(table.name);
}

void failColumn(const Table& table, const Column& column, const std::string& why)
{
    Error error(ErrorCode::CannotWrite,
                "Cannot write table " + quoted(table.name) + ", column " + quoted(column.name) + ": " + why,
                Reason::ValueDoesNotFit);
    throw error.at(table.name, column.name);
}

void failValue(const Table& table, const Column& column, std::size_t row, const std::string& why)
{
    Error error(ErrorCode::CannotWrite,
                "Cannot write table " + quoted(table.name) + ", column " + quoted(column.name) + ", row " +
                    std::to_string(row + 1) + ": " + why,
                Reason::ValueDoesNotFit);
    throw error.at(table.name, column.name).counts(row + 1);
}

} // namespace jet::writer
