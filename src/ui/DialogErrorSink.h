#pragma once

#include "Dialogs.h"
#include "store/ErrorSink.h"

#include <functional>

namespace ui {

// Shows the store's failures as boxes over the frame and writes them to the
// log (standard error in the program), so a failure at start-up is also seen
// by whoever started the program from a terminal or a script.
class DialogErrorSink : public store::ErrorSink
{
public:
    using Log = std::function<void(const QString&)>;

    DialogErrorSink(Dialogs& dialogs, Log log);

    void engineError(int number, const QString& description) override;
    void storeFailure(const store::StoreError& error) override;
    // Asks with Yes and No; the failure goes to the log either way.
    bool goOnWithoutCopy(const store::StoreError& error) override;

    // The number of failures reported so far.
    int failureCount() const { return m_failures; }

private:
    Dialogs& m_dialogs;
    Log m_log;
    int m_failures = 0;
};

// Writes one line to standard error.
void writeToStandardError(const QString& message);

} // namespace ui
