#pragma once

#include <stdexcept>
#include <string>

namespace jet {

// Error numbers as the Jet engine reports them, so that the program can show
// the same number a user of the format would recognise.
enum class ErrorCode
{
    FileNotFound = 3024,     // "Could not find file"
    NotAValidPassword = 3031, // "Not a valid password."
    FileInUse = 3045,        // "Could not use file; file already in use."
    CannotWrite = 3026,      // "Not enough space on disk." and other write failures
    DamagedFile = 3343,      // "Unrecognized database format."
};

class Error : public std::runtime_error
{
public:
    Error(ErrorCode code, const std::string& what) : std::runtime_error(what), m_code(code) {}
    ErrorCode code() const { return m_code; }
    int number() const { return static_cast<int>(m_code); }

private:
    ErrorCode m_code;
};

} // namespace jet
