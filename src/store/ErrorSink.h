#pragma once

#include "StoreError.h"

#include <QString>

namespace store {

// Where the store reports failures while a handler runs; the program shows
// message boxes, tests record them.
class ErrorSink
{
public:
    virtual ~ErrorSink() = default;
    // One failed statement. The box text is engineErrorText(number, description).
    virtual void engineError(int number, const QString& description) = 0;
    // The data file could not be opened, read or saved; error.message() says why.
    virtual void storeFailure(const StoreError& error) = 0;
    // An automatic copy before a change could not be made; error.message()
    // says why and asks whether to go on without it. True to go on.
    virtual bool goOnWithoutCopy(const StoreError& error);
};

// "Error number: " + number + carriage return + description.
QString engineErrorText(int number, const QString& description);

} // namespace store
