#pragma once

#include <QString>

#include <stdexcept>

namespace store {

// A failure of the data file or of a statement, with the Russian message the
// user sees. The message names the file and the cause.
class StoreError : public std::runtime_error
{
public:
    enum class Kind // forFile's patterns follow this order
    {
        Missing,
        Unreadable,
        Damaged,
        WrongPassword,
        Locked,
        LockUnusable, // the lock file beside the data file cannot be opened; the path is the lock file's
        ReadOnly,     // the data file is protected against writing: no change is saved
        CannotWrite,
        ChangedOnDisk,
        Statement, // an engine error of one statement; message() is its box text
    };

    StoreError(Kind kind, const QString& message, const QString& cause = {});

    static StoreError forFile(Kind kind, const QString& path, const QString& cause = {});
    static StoreError statement(int number, const QString& description);
    // The cause of a failed system call, in words (never the C library's text).
    static QString describeErrno(int errorNumber);

    Kind kind() const { return m_kind; }
    const QString& message() const { return m_message; }
    // The cause in words, as forFile was given it (without a final full stop),
    // for a message of another wording; empty when there was none.
    const QString& cause() const { return m_cause; }

private:
    Kind m_kind;
    QString m_message;
    QString m_cause;
};

} // namespace store
