#include "wizard/ImportShipPage.h"

#include "forms/WizardShip.h"

#include <QIcon>
#include <QVBoxLayout>

namespace {

// The ship's line in the table, kept with its row.
constexpr int LineRole = Qt::UserRole + 1;

} // namespace

ImportShipPage::ImportShipPage(QWidget* parent) : QWizardPage(parent), m_form(new WizardShip(this))
{
    auto* layout = new QVBoxLayout(this); // owned by the page
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_form);
    connect(m_form->ListShips, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        emit completeChanged();
        emit ShipSelected(item);
    });
    connect(m_form->ListShips, &QTreeWidget::itemSelectionChanged, this, &QWizardPage::completeChanged);
    connect(m_form->ListShips, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { emit ShipChosen(item); });
}

void ImportShipPage::Fill(const QList<ShipRow>& rows, const QString& programDir)
{
    QTreeWidget* list = m_form->ListShips;
    const QIcon icon(programDir + "/Icons/ship.png");
    list->setSortingEnabled(false);
    list->clear();
    QList<QTreeWidgetItem*> items;
    for (const ShipRow& row : rows) {
        auto* item =
            new QTreeWidgetItem(QStringList{row.Id, row.Name, row.Number}); // owned by the list once added
        item->setIcon(0, icon);
        item->setData(0, LineRole, row.Line);
        items.append(item);
    }
    list->addTopLevelItems(items);
    list->setSortingEnabled(true);
    list->setCurrentItem(nullptr);
}

int ImportShipPage::SelectedLine() const
{
    const QTreeWidgetItem* item = m_form->ListShips->currentItem();
    return item && item->isSelected() ? item->data(0, LineRole).toInt() : -1;
}

bool ImportShipPage::SelectShip(const QString& id)
{
    QTreeWidget* list = m_form->ListShips;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = list->topLevelItem(i);
        if (item->text(0) == id) {
            list->setCurrentItem(item);
            item->setSelected(true);
            return true;
        }
    }
    return false;
}

bool ImportShipPage::isComplete() const
{
    return SelectedLine() >= 0;
}
