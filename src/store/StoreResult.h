#pragma once

#include "StoreError.h"

#include <optional>

namespace store {

// The outcome of a handler's transaction. The failure has already been shown
// through the store's ErrorSink; callers only decide whether to go on.
class StoreResult
{
public:
    StoreResult() = default;
    explicit StoreResult(StoreError error) : m_error(std::move(error)) {}

    bool ok() const { return !m_error.has_value(); }
    explicit operator bool() const { return ok(); }
    // Only for a failed result.
    const StoreError& error() const { return *m_error; }

private:
    std::optional<StoreError> m_error;
};

} // namespace store
