#pragma once

#include <QStringList>

class QComboBox;

namespace ui {

// A list of catalogue entries ("3 - Питание") in a combo box.
class CatalogueList
{
public:
    // The row of the entry with `code`; -1 when there is none.
    static int indexOf(const QComboBox* list, int code);
    // Chooses the entry with `code`; nothing is chosen when there is none.
    static void choose(QComboBox* list, int code);
    // Puts `entries` in place of the list's entries. The entry chosen before
    // stays chosen, under its new name, while its code is still listed;
    // otherwise nothing is chosen and the list's text is empty.
    static void refill(QComboBox* list, const QStringList& entries);
};

} // namespace ui
