#pragma once

#include <QString>

#include <exception>

namespace jet {
class Error;
}

// The cause of a failure in the user's words, for the %2 of a store message:
// every error of the Jet codec (damage the reader found, a value the writer
// cannot store, a file that cannot be read or written) and any other
// exception. No library's own text reaches the user.
namespace store {

QString describeJetError(const jet::Error& error);
QString describeFailure(const std::exception& error);

} // namespace store
