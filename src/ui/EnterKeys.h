#pragma once

#include <QHash>
#include <QList>
#include <QObject>

class QAbstractButton;
class QWidget;

namespace ui {

// Enter the same way in every window. A window's frames are chains of fields
// (text fields and lists) ending in the frame's operation button: Enter in a
// field moves to the chain's next field that is enabled, and in the last one
// presses the operation; a chain without an operation stays where it is. A
// push button that has the focus takes Enter itself. The key goes no further,
// so nothing else (a default button, a window's own key handling) fires too.
class EnterKeys : public QObject
{
public:
    // Every push button of `window` takes Enter itself.
    explicit EnterKeys(QWidget* window);

    // One frame's fields in their order and its operation (none: nullptr).
    void addFrame(const QList<QWidget*>& fields, QAbstractButton* operation);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Frame
    {
        QList<QWidget*> fields;
        QAbstractButton* operation = nullptr;
    };
    // Where a watched field stands: its frame and its place in the chain.
    struct Place
    {
        qsizetype frame = 0;
        qsizetype field = 0;
    };

    void watch(QObject* object, Place place);
    void leave(Place place) const;

    QList<Frame> m_frames;
    QHash<const QObject*, Place> m_places;
};

} // namespace ui
