#pragma once

#include "store/ErrorSink.h"

#include <QStringList>

namespace velmora::test {

// Keeps what the store reported instead of showing it.
class RecordingSink : public store::ErrorSink
{
public:
    void engineError(int number, const QString& description) override
    {
        messages.append(store::engineErrorText(number, description));
    }
    void storeFailure(const store::StoreError& error) override { messages.append(error.message()); }

    QStringList messages;
};

} // namespace velmora::test
