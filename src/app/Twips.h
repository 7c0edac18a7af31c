#pragma once

#include <QPoint>

namespace app {

// Window positions are kept in twips; a pixel is 15 twips.
inline constexpr int kTwipsPerPixel = 15;

// The first coordinate written is the left edge, the second the top edge.
constexpr QPoint fromTwips(int left, int top)
{
    return {left / kTwipsPerPixel, top / kTwipsPerPixel};
}

} // namespace app
