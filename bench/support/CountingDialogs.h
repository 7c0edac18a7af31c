#pragma once

#include "ui/Dialogs.h"

namespace bench {

// Any box would mean the benchmark measured something else; it is counted
// and answered at once.
class CountingDialogs : public ui::Dialogs
{
public:
    ui::DialogAnswer showMessage(const QString&, const QString&, ui::DialogIcon, ui::DialogButtons) override
    {
        ++shown;
        return ui::DialogAnswer::Ok;
    }
    std::optional<QString> askText(const QString&, const QString&, const QString&) override
    {
        ++shown;
        return std::nullopt;
    }
    int shown = 0;
};

} // namespace bench
