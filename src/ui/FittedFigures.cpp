#include "FittedFigures.h"

#include <QEvent>
#include <QLineEdit>
#include <QStyle>

#include <algorithm>

namespace ui {

namespace {

// Room QLineEdit keeps free beside its text inside the frame, in pixels.
constexpr int kTextMargins = 6;
constexpr qreal kSmallestScale = 0.5;

} // namespace

void FittedFigures::add(QLineEdit* field)
{
    // A smaller font must not narrow the field in its layout.
    field->setMinimumWidth(std::max(field->minimumWidth(), field->sizeHint().width()));
    field->installEventFilter(this);
    connect(field, &QLineEdit::textChanged, this, [field] { fit(field); });
    fit(field);
}

bool FittedFigures::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        fit(static_cast<QLineEdit*>(watched));
    return QObject::eventFilter(watched, event);
}

void FittedFigures::fit(QLineEdit* field)
{
    QFont font = field->parentWidget() ? field->parentWidget()->font() : field->font();
    const int frame = field->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, field);
    const int room = field->contentsRect().width() - 2 * frame - kTextMargins;
    const QString text = field->text();
    const auto tooWide = [&] { return room > 0 && QFontMetrics(font).horizontalAdvance(text) > room; };
    const bool shrunk = tooWide();
    const bool points = font.pointSizeF() > 0;
    const qreal normal = points ? font.pointSizeF() : font.pixelSize();
    for (qreal size = normal; tooWide() && size > normal * kSmallestScale;) {
        size = std::max(normal * kSmallestScale, size - normal / 20);
        if (points)
            font.setPointSizeF(size);
        else
            font.setPixelSize(qRound(size));
    }
    field->setFont(font);
    field->setToolTip(shrunk ? text : QString());
}

} // namespace ui
