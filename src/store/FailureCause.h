#pragma once

#include "StoreError.h"

#include <QString>

#include <exception>

namespace jet {
class Error;
}

// The cause of a failure in the user's words, for the %2 of a store message:
// every error of the Jet codec (damage the reader found, a value the writer
// cannot store), a file that cannot be read or written, and any other
// exception. No library's own text reaches the user.
namespace store {

class FileError;

QString describeJetError(const jet::Error& error);
QString describeFailure(const std::exception& error);

// A file that could not be read, as the store reports it: Missing when it is
// not there, otherwise Unreadable with the cause. `path` as the user sees it.
StoreError readFailure(const QString& path, const FileError& error);

} // namespace store
