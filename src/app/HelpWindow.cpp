#include "HelpWindow.h"

#include "AppTexts.h"
#include "ui/ScreenFit.h"

#include <QFileInfo>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace app {

HelpWindow::HelpWindow(QWidget* parent) : QDialog(parent)
{
    setObjectName("HelpWindow");
    setWindowTitle(QString::fromUtf8(texts::helpTitle));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_browser = new QTextBrowser(this);
    m_browser->setObjectName("helpBrowser");
    m_browser->setOpenExternalLinks(true);
    layout->addWidget(m_browser);
    resize(ui::fittedToScreen(this, {720, 640}));
}

bool HelpWindow::openPage(const QString& path)
{
    const QFileInfo page(path);
    if (!page.isFile() || !page.isReadable())
        return false;
    m_browser->setSource(QUrl::fromLocalFile(page.absoluteFilePath()));
    return !m_browser->document()->isEmpty();
}

QString HelpWindow::pageTitle() const
{
    return m_browser->documentTitle();
}

QString HelpWindow::pageText() const
{
    return m_browser->toPlainText();
}

} // namespace app
