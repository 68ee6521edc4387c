#include "package/WListView.h"

#include <QHeaderView>

WListView::WListView(QWidget* parent, const char* name) : QTreeWidget(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    setRootIsDecorated(false);
    setAllColumnsShowFocus(true);
    setAcceptDrops(true);
    setSortingEnabled(true);
    sortByColumn(0, Qt::AscendingOrder);
    header()->setSectionResizeMode(QHeaderView::Interactive);
}
