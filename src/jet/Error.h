#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace jet {

// Error numbers as the Jet engine reports them, so that the program can show
// the same number a user of the format would recognise.
enum class ErrorCode
{
    NotAValidPassword = 3031, // "Not a valid password."
    CannotWrite = 3026,       // a value or a file the format cannot hold
    DamagedFile = 3343,       // "Unrecognized database format."
};

// What exactly went wrong, so that a program can say it in its own words;
// what() says it in English for logs and the data-file tool.
enum class Reason
{
    Unspecified,
    // reading
    EmptyFile,
    NotJetFile,
    CutShort,        // a page or a map entry lies beyond the end of the file
    Catalog,         // the list of tables
    Definition,      // a table definition
    UsageMap,        // a table's list of its pages
    ForeignPage,     // a table lists a page that is not one of its data pages
    Page,            // a data page's table of rows
    Row,             // a row's layout
    RowCount,        // the rows found differ from the count the definition states
    LongValue,       // a long value's length differs from the bytes found
    LongValueReused, // a long-value row met twice: a chain that loops, or two values sharing one
    DuplicateTable,  // two catalog entries share one definition
    // writing
    ValueDoesNotFit, // a value, column or table the format cannot hold
    FileTooLarge,    // more than 2 GB
};

class Error : public std::runtime_error
{
public:
    Error(ErrorCode code, const std::string& what, Reason reason = Reason::Unspecified)
        : std::runtime_error(what), m_code(code), m_reason(reason)
    {}
    ErrorCode code() const { return m_code; }
    int number() const { return static_cast<int>(m_code); }
    Reason reason() const { return m_reason; }

    // Where it happened, when known: the table and column, and two numbers
    // whose meaning depends on the reason (rows found and stated, a page
    // number, a row counted from 1).
    const std::u16string& table() const { return m_table; }
    const std::u16string& column() const { return m_column; }
    std::uint64_t found() const { return m_found; }
    std::uint64_t stated() const { return m_stated; }

    Error& at(std::u16string table, std::u16string column = {})
    {
        m_table = std::move(table);
        m_column = std::move(column);
        return *this;
    }
    Error& counts(std::uint64_t found, std::uint64_t stated = 0)
    {
        m_found = found;
        m_stated = stated;
        return *this;
    }

    // The same error, its text and table naming `table`.
    Error inTable(const std::u16string& table) const;

private:
    ErrorCode m_code;
    Reason m_reason;
    std::u16string m_table;
    std::u16string m_column;
    std::uint64_t m_found = 0;
    std::uint64_t m_stated = 0;
};

} // namespace jet
