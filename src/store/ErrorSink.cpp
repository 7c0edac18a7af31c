#include "ErrorSink.h"

#include <QDebug>

namespace store {

QString engineErrorText(int number, const QString& description)
{
    return StoreError::statement(number, description).message();
}

} // namespace store

namespace store {

bool ErrorSink::goOnWithoutCopy(const StoreError& error)
{
    qWarning().noquote() << error.message();
    return true;
}

} // namespace store
