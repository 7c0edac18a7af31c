#include "DialogErrorSink.h"

#include "UiTexts.h"

#include <cstdio>

namespace ui {

DialogErrorSink::DialogErrorSink(Dialogs& dialogs, Log log) : m_dialogs(dialogs), m_log(std::move(log)) {}

void DialogErrorSink::engineError(int number, const QString& description)
{
    ++m_failures;
    const QString text = store::engineErrorText(number, description);
    if (m_log)
        m_log(text);
    // An engine error box has no icon and no title of its own.
    m_dialogs.showMessage(text, QString::fromUtf8(texts::appTitle), DialogIcon::None, DialogButtons::Ok);
}

void DialogErrorSink::storeFailure(const store::StoreError& error)
{
    ++m_failures;
    if (m_log)
        m_log(error.message());
    m_dialogs.showMessage(error.message(), QString::fromUtf8(texts::errorTitle), DialogIcon::Critical,
                          DialogButtons::Ok);
}

bool DialogErrorSink::goOnWithoutCopy(const store::StoreError& error)
{
    if (m_log)
        m_log(error.message());
    return m_dialogs.confirm(QString::fromUtf8(texts::attentionTitle), error.message());
}

void writeToStandardError(const QString& message)
{
    const QByteArray line = QString::fromUtf8(texts::logLine).arg(message).toUtf8();
    std::fprintf(stderr, "%s\n", line.constData());
    std::fflush(stderr);
}

} // namespace ui
