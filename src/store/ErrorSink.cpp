#include "ErrorSink.h"

namespace store {

QString engineErrorText(int number, const QString& description)
{
    return StoreError::statement(number, description).message();
}

} // namespace store
