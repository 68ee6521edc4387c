#include "forms/FormSupport.h"

#include <QObject>
#include <QString>
#include <QTreeWidget>

// Q_INIT_RESOURCE expands to a declaration that must stand outside any namespace.
static void initFormsResources()
{
    Q_INIT_RESOURCE(forms);
}

namespace FormSupport {

void EnsureResources()
{
    static const bool registered = [] {
        initFormsResources();
        return true;
    }();
    (void)registered;
}

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
