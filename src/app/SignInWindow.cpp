#include "SignInWindow.h"

#include "ui/EnterKeys.h"
#include "ui_SignInWindow.h"

#include <QCloseEvent>

namespace app {

SignInWindow::SignInWindow(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui::SignInWindow>())
{
    m_ui->setupUi(this);
    connect(m_ui->Command1, &QPushButton::clicked, this, [this] { emit signInRequested(typedPassword()); });
    (new ui::EnterKeys(this))->addFrame({m_ui->T1}, m_ui->Command1);
    m_ui->T1->setFocus();
}

SignInWindow::~SignInWindow() = default;

QString SignInWindow::typedPassword() const
{
    return m_ui->T1->text();
}

void SignInWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    emit closed();
}

} // namespace app
