#pragma once

#include "StoreResult.h"

#include <QString>

#include <optional>
#include <utility>

namespace store {

// How an operation that changes the data file ended; the one result type of
// every operation of the ledger and the service. Nothing is written unless it
// is done. A refusal carries the text the window shows; when the store could
// not run or save the operation it has already shown why through its
// ErrorSink, so there is nothing left to show.
class Outcome
{
public:
    static Outcome done() { return Outcome(Kind::Done, {}); }
    static Outcome notSaved() { return Outcome(Kind::NotSaved, {}); }
    static Outcome refused(QString message) { return Outcome(Kind::Refused, std::move(message)); }
    // How a transaction's commit() ended: done, or not saved (the store has
    // shown why).
    static Outcome committed(const StoreResult& result) { return result ? done() : notSaved(); }

    bool isDone() const { return m_kind == Kind::Done; }
    bool isRefused() const { return m_kind == Kind::Refused; }
    explicit operator bool() const { return isDone(); }
    // What the window still has to show: the refusal's text, otherwise empty.
    const QString& message() const { return m_message; }

private:
    enum class Kind
    {
        Done,
        NotSaved,
        Refused,
    };
    Outcome(Kind kind, QString message) : m_kind(kind), m_message(std::move(message)) {}

    Kind m_kind;
    QString m_message;
};

// An outcome that also hands back what the operation produced (a new code, a
// date); the value is there only when the operation is done.
template <typename T> class Result : public Outcome
{
public:
    Result(Outcome outcome) : Outcome(std::move(outcome)) {}
    Result(T value) : Outcome(Outcome::done()), m_value(std::move(value)) {}

    // Throws std::bad_optional_access when the operation is not done.
    const T& value() const { return m_value.value(); }

private:
    std::optional<T> m_value;
};

} // namespace store
