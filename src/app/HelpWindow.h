#pragma once

#include <QDialog>

class QTextBrowser;

namespace app {

// The help page velmora-help.html, shown beside the program's windows.
class HelpWindow : public QDialog
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget* parent = nullptr);

    // False when the page cannot be read.
    bool openPage(const QString& path);
    QString pageTitle() const;
    QString pageText() const;

private:
    QTextBrowser* m_browser = nullptr;
};

} // namespace app
