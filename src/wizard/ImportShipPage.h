// The first page of the import wizard: the ships of the mod. Next is offered
// only while a ship is selected.
#pragma once

#include "wizard/ImportSession.h"

#include <QWizardPage>

class QTreeWidgetItem;
class WizardShip;

class ImportShipPage : public QWizardPage
{
    Q_OBJECT
public:
    explicit ImportShipPage(QWidget* parent = nullptr);

    WizardShip* Form() const { return m_form; }
    // Shows the rows with the ship icon of the program directory.
    void Fill(const QList<ShipRow>& rows, const QString& programDir);
    // The line of the selected ship (ShipRow::Line), or -1.
    int SelectedLine() const;
    // Selects the ship of `id` (the first of that id); false when there is none.
    bool SelectShip(const QString& id);

    bool isComplete() const override;

signals:
    void ShipSelected(QTreeWidgetItem* item);
    void ShipChosen(QTreeWidgetItem* item);

private:
    WizardShip* m_form; // child of the page
};
