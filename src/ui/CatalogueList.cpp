#include "CatalogueList.h"

#include "store/CatalogueEntry.h"

#include <QComboBox>

#include <optional>

namespace ui {

int CatalogueList::indexOf(const QComboBox* list, int code)
{
    for (int row = 0; row < list->count(); ++row)
        if (store::CatalogueEntry::codeOf(list->itemText(row)) == code)
            return row;
    return -1;
}

void CatalogueList::choose(QComboBox* list, int code)
{
    list->setCurrentIndex(indexOf(list, code));
}

void CatalogueList::refill(QComboBox* list, const QStringList& entries)
{
    const std::optional<int> chosen =
        list->currentIndex() < 0 ? std::nullopt : store::CatalogueEntry::codeOf(list->currentText());
    list->clear();
    list->addItems(entries);
    list->setCurrentIndex(chosen ? indexOf(list, *chosen) : -1);
}

} // namespace ui
