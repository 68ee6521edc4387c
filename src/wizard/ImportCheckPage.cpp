#include "wizard/ImportCheckPage.h"

#include "forms/WizardComp.h"
#include "forms/WizardDummy.h"

#include <QVBoxLayout>

namespace {

// Where a check row's entry stands in the tree.
constexpr int SectionRole = Qt::UserRole + 1;
constexpr int RowRole = Qt::UserRole + 2;

} // namespace

ImportCheckPage::ImportCheckPage(Kind kind, CheckTree* tree, QWidget* parent)
    : QWizardPage(parent), m_kind(kind), m_tree(tree)
{
    auto* layout = new QVBoxLayout(this); // owned by the page
    layout->setContentsMargins(0, 0, 0, 0);
    if (kind == Kind::Dummies) {
        auto* form = new WizardDummy(this);
        layout->addWidget(form);
        m_list = form->ListDummy;
    } else {
        auto* form = new WizardComp(this);
        layout->addWidget(form);
        m_list = form->ListComp;
    }
    connect(m_list, &QTreeWidget::itemChanged, this, &ImportCheckPage::RowChanged);
}

void ImportCheckPage::SetColumnTitles(const QStringList& titles)
{
    m_list->setHeaderLabels(titles);
}

void ImportCheckPage::Show()
{
    m_filling = true;
    m_list->setUpdatesEnabled(false);
    m_list->setSortingEnabled(false);
    m_list->clear();
    // The rows are built apart from the list and added in one go: a list
    // told of every row on its own slows down with its length.
    QList<QTreeWidgetItem*> tops;
    QList<QTreeWidgetItem*> groups;
    const QList<CheckSection>& sections = m_tree->Sections();
    for (int s = 0; s < sections.size(); ++s) {
        auto* top = new QTreeWidgetItem(QStringList{sections[s].Name}); // owned by the list once added
        for (int r = 0; r < sections[s].Rows.size(); ++r) {
            const CheckRow& row = sections[s].Rows[r];
            auto* check = new QTreeWidgetItem(top); // owned by its section row
            check->setText(1, row.Text);
            check->setFlags(check->flags() | Qt::ItemIsUserCheckable);
            check->setCheckState(0, row.Ticked ? Qt::Checked : Qt::Unchecked);
            check->setData(0, SectionRole, s);
            check->setData(0, RowRole, r);
            if (m_kind == Kind::Components) {
                for (const QString& line : row.Lines)
                    new QTreeWidgetItem(check,
                                        QStringList{QString(), QString(), line}); // owned by its group row
                groups.append(check);
            }
        }
        tops.append(top);
    }
    m_list->addTopLevelItems(tops);
    for (QTreeWidgetItem* item : std::as_const(tops))
        item->setExpanded(true);
    for (QTreeWidgetItem* item : std::as_const(groups))
        item->setExpanded(true);
    // The tree is in the order the wizard matches in; the form sorts by
    // column 0, which keeps it.
    m_list->setSortingEnabled(true);
    m_list->setUpdatesEnabled(true);
    m_filling = false;
}

void ImportCheckPage::RowChanged(QTreeWidgetItem* item, int column)
{
    if (m_filling || column != 0 || !item->data(0, RowRole).isValid())
        return;
    const CheckPlace place{item->data(0, SectionRole).toInt(), item->data(0, RowRole).toInt()};
    m_tree->SetTicked(place, item->checkState(0) == Qt::Checked);
}
