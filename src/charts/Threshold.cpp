#include "Threshold.h"

namespace charts {

Threshold Threshold::fromField(const QString& text)
{
    Threshold threshold;
    if (text.isEmpty())
        return threshold;
    if (const auto typed = store::Amount::parse(text))
        threshold.m_value = *typed;
    else
        threshold.m_rejected = true;
    return threshold;
}

} // namespace charts
