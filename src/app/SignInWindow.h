#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class SignInWindow;
}

namespace app {

// Form5 "Пароль": the password field and the button "Вход". The frame checks
// the typed text against the stored password.
class SignInWindow : public QWidget
{
    Q_OBJECT

public:
    explicit SignInWindow(QWidget* parent = nullptr);
    ~SignInWindow() override;

    QString typedPassword() const;

signals:
    void signInRequested(const QString& typed);
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    std::unique_ptr<Ui::SignInWindow> m_ui;
};

} // namespace app
