#include "balance/DSelectVariant.h"

#include "balance/BalanceText.h"
#include "gamedata/ShipLine.h"

#include <QTreeWidgetItem>

namespace {

void AddRow(QTreeWidget* list, int number, const QString& name)
{
    auto* item = new QTreeWidgetItem(list); // owned by the list
    item->setText(0, QString::asprintf("%3d: ", number) + name);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(0, Qt::Checked);
}

} // namespace

DSelectVariant::DSelectVariant(const QStringList& textTable, const QStringList& variantNames, QWidget* parent)
    : SelectVariant(parent, nullptr, true)
{
    setWindowTitle(QStringLiteral("Qt: ") + textTable.value(BalanceText::SelectVariations));
    ListVariant->setHeaderLabels({textTable.value(BalanceText::ShipVariation)});
    ButDone->setText(textTable.value(BalanceText::Done));
    ButCancel->setText(textTable.value(BalanceText::Cancel));

    AddRow(ListVariant, 0, textTable.value(BalanceText::StandardVariation));
    const int offered = std::min<int>(OfferedVariants, variantNames.size());
    for (int number = 1; number <= offered; ++number) {
        QString name = variantNames[number - 1];
        name.remove(u'\n').remove(u'\r');
        AddRow(ListVariant, number, name);
    }
}

QList<int> DSelectVariant::CheckedVariants() const
{
    QList<int> numbers;
    for (int row = 0; row < ListVariant->topLevelItemCount(); ++row) {
        const QTreeWidgetItem* item = ListVariant->topLevelItem(row);
        if (item->checkState(0) == Qt::Checked)
            numbers.append(ReadInt(item->text(0).section(u':', 0, 0)));
    }
    return numbers;
}
