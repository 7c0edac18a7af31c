#include "EnterKeys.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

namespace ui {

namespace {

bool isEnter(const QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent*>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

EnterKeys::EnterKeys(QWidget* window) : QObject(window)
{
    for (QPushButton* button : window->findChildren<QPushButton*>())
        button->installEventFilter(this);
}

void EnterKeys::addFrame(const QList<QWidget*>& fields, QAbstractButton* operation)
{
    m_frames.append({fields, operation});
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const Place place{m_frames.size() - 1, i};
        watch(fields[i], place);
        // A list that takes typing holds a text field of its own.
        if (auto* list = qobject_cast<QComboBox*>(fields[i]); list && list->lineEdit())
            watch(list->lineEdit(), place);
    }
}

void EnterKeys::watch(QObject* object, Place place)
{
    m_places.insert(object, place);
    object->installEventFilter(this);
}

// An open list's popup has the keyboard, not the list: Enter there still
// chooses the entry, as it should.
bool EnterKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (!isEnter(event))
        return QObject::eventFilter(watched, event);
    if (const auto place = m_places.constFind(watched); place != m_places.constEnd())
        leave(*place);
    else if (auto* button = qobject_cast<QPushButton*>(watched); button && button->isEnabled())
        button->click();
    return true;
}

void EnterKeys::leave(Place place) const
{
    const Frame& frame = m_frames.at(place.frame);
    for (qsizetype i = place.field + 1; i < frame.fields.size(); ++i) {
        if (frame.fields[i]->isEnabled()) {
            frame.fields[i]->setFocus(Qt::TabFocusReason);
            return;
        }
    }
    if (frame.operation && frame.operation->isEnabled())
        frame.operation->click();
}

} // namespace ui
