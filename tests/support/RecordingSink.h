#pragma once

#include "store/ErrorSink.h"
#include "store/Outcome.h"

#include <QStringList>

#include <string>

namespace velmora::test {

// Keeps what the store reported instead of showing it: every message in
// order, and each kind apart.
class RecordingSink : public store::ErrorSink
{
public:
    void engineError(int number, const QString& description) override
    {
        engineErrors.append(store::engineErrorText(number, description));
        messages.append(engineErrors.last());
    }
    void storeFailure(const store::StoreError& error) override
    {
        storeFailures.append(error.message());
        messages.append(error.message());
    }

    QStringList engineErrors; // as their boxes read
    QStringList storeFailures;
    QStringList messages;
};

// What an operation's outcome says, for comparisons: "done", "not saved" (the
// sink holds why) or the text of the refusal.
inline std::string said(const store::Outcome& outcome)
{
    return outcome.isDone() ? "done" : outcome.isRefused() ? outcome.message().toStdString() : "not saved";
}

} // namespace velmora::test
