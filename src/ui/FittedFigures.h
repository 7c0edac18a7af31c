#pragma once

#include <QObject>

class QLineEdit;

namespace ui {

// Keeps the figures of read-only fields whole. A figure wider than its field
// (the sums of a file with extreme values run to 25 characters and more) is
// shown in a smaller font, down to half the normal size, and in full as the
// field's tooltip; an ordinary figure keeps the window's font.
class FittedFigures : public QObject
{
public:
    using QObject::QObject;

    void add(QLineEdit* field);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static void fit(QLineEdit* field);
};

} // namespace ui
