#include "forms/FormSupport.h"

#include <QObject>
#include <QString>
#include <QTreeWidget>

namespace FormSupport {

void ApplyObjectName(QObject* form, const char* name)
{
    if (name && *name)
        form->setObjectName(QString::fromUtf8(name));
}

void SortByFirstColumn(QTreeWidget* list)
{
    list->setSortingEnabled(true);
    list->sortByColumn(0, Qt::AscendingOrder);
}

} // namespace FormSupport
