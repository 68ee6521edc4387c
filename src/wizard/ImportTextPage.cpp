#include "wizard/ImportTextPage.h"

#include "forms/WizardText.h"

#include <QIcon>
#include <QVBoxLayout>

namespace {

constexpr int IndexRole = Qt::UserRole + 1;

} // namespace

ImportTextPage::ImportTextPage(const QString& programDir, QWidget* parent)
    : QWizardPage(parent), m_form(new WizardText(this)), m_programDir(programDir)
{
    auto* layout = new QVBoxLayout(this); // owned by the page
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_form);
    m_form->ListText->setContextMenuPolicy(Qt::CustomContextMenu);
}

QTreeWidget* ImportTextPage::List() const
{
    return m_form->ListText;
}

void ImportTextPage::Show(const QList<ImportedText>& texts)
{
    QTreeWidget* list = m_form->ListText;
    const QIcon icon(m_programDir + "/Icons/text.png");
    list->setSortingEnabled(false);
    list->clear();
    for (int i = 0; i < texts.size(); ++i) {
        const ImportedText& text = texts[i];
        auto* row =
            new QTreeWidgetItem(list, {text.Language, text.Name, text.Description}); // owned by the list
        row->setIcon(0, icon);
        row->setData(0, IndexRole, i);
    }
    list->setSortingEnabled(true);
}

int ImportTextPage::TextIndex(const QTreeWidgetItem* item)
{
    return item ? item->data(0, IndexRole).toInt() : -1;
}

int ImportTextPage::SelectedIndex() const
{
    const QList<QTreeWidgetItem*> selected = m_form->ListText->selectedItems();
    return selected.isEmpty() ? -1 : TextIndex(selected.first());
}
