// A page of the import wizard with a tree of table rows to tick: the mod's
// dummies (a row for each line) or its components (a row for each group,
// with the group's lines below it). Ticks the user sets or clears go straight
// into the CheckTree the page shows.
#pragma once

#include "wizard/ImportParts.h"

#include <QWizardPage>

class QTreeWidget;
class QTreeWidgetItem;

class ImportCheckPage : public QWizardPage
{
    Q_OBJECT
public:
    enum class Kind
    {
        Dummies,   // sections, and below them each line as a check row (column 1)
        Components // sections, groups as check rows (id in column 1), lines below (column 2)
    };

    // `tree` is borrowed and must outlive the page's use.
    ImportCheckPage(Kind kind, CheckTree* tree, QWidget* parent = nullptr);

    QTreeWidget* List() const { return m_list; }
    void SetColumnTitles(const QStringList& titles);
    // Shows the tree as it stands.
    void Show();

private:
    void RowChanged(QTreeWidgetItem* item, int column);

    Kind m_kind;
    CheckTree* m_tree;
    QTreeWidget* m_list = nullptr; // of the form, a child of the page
    bool m_filling = false;
};
