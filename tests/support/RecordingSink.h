#pragma once

#include "store/ErrorSink.h"

#include <QStringList>

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

} // namespace velmora::test
