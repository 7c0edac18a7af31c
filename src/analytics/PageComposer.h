#pragma once

#include "ReportDocument.h"

#include <QFont>
#include <QRectF>

#include <vector>

class QPaintDevice;
class QPainter;

namespace analytics {

// The page geometry of one report on one device: measures every line with
// the device's own font metrics, decides which lines go on which page and
// paints a page. Distances are in device pixels.
class PageComposer
{
public:
    struct Page
    {
        std::size_t first = 0; // index of the first line on the page
        std::size_t count = 0;
        bool last = false; // the total goes after its lines
    };

    PageComposer(const ReportDocument& report, QPaintDevice& device);

    // At least one page, also for a report without lines.
    std::vector<Page> paginate() const;
    void paintPage(QPainter& painter, const Page& page, int number, int pageCount) const;

private:
    qreal mm(qreal millimetres) const;
    // Lays `text` out in `box`'s width, wrapping at word boundaries (or
    // anywhere in a word longer than the width); paints it when `painter` is
    // given. Returns the height used.
    qreal text(QPainter* painter, const QString& text, const QFont& font, const QRectF& box,
               Qt::Alignment alignment) const;
    qreal row(QPainter* painter, const QStringList& cells, const QFont& font, qreal y) const;
    qreal heading(QPainter* painter) const;
    void footer(QPainter& painter, int number, int pageCount) const;
    QStringList headers() const;
    QStringList totalCells() const;
    qreal rowsRoom() const;

    const ReportDocument& m_report;
    QPaintDevice& m_device;
    QFont m_small;
    QFont m_title;
    QFont m_heading;
    QFont m_body;
    QFont m_bold;
    qreal m_width = 0;
    qreal m_height = 0;
    std::vector<qreal> m_columnX;
    std::vector<qreal> m_columnWidth;
    qreal m_headingHeight = 0;
    qreal m_columnsHeight = 0;
    qreal m_footerHeight = 0;
    qreal m_totalHeight = 0;
};

} // namespace analytics
