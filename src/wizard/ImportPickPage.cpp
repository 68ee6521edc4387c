#include "wizard/ImportPickPage.h"

#include "forms/WizardSelectListH.h"
#include "forms/WizardSelectListV.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

QList<int> SelectedRows(const QListWidget* list)
{
    QList<int> rows;
    for (const QListWidgetItem* item : list->selectedItems())
        rows.append(list->row(item));
    std::sort(rows.begin(), rows.end());
    return rows;
}

void FillList(QListWidget* list, const QStringList& entries, const QIcon& icon)
{
    list->setUpdatesEnabled(false);
    list->clear();
    list->addItems(entries);
    for (int row = 0; row < list->count(); ++row)
        list->item(row)->setIcon(icon);
    list->setUpdatesEnabled(true);
}

} // namespace

ImportPickPage::ImportPickPage(Layout layout, const QIcon& icon, QWidget* parent)
    : QWizardPage(parent), m_icon(icon)
{
    auto* pageLayout = new QVBoxLayout(this); // owned by the page
    pageLayout->setContentsMargins(0, 0, 0, 0);
    // Both forms have the same widgets; the page keeps pointers to them.
    auto adopt = [this, pageLayout](auto* form) {
        pageLayout->addWidget(form);
        m_groupAvailable = form->GroupFrom;
        m_groupChosen = form->GroupData;
        m_available = form->ListMod;
        m_chosen = form->ListAdd;
        m_add = form->ButAdd;
        m_addAll = form->ButAddAll;
        m_remove = form->ButRemove;
        m_removeAll = form->ButRemoveAll;
    };
    if (layout == Layout::ListsAbove)
        adopt(new WizardSelectListV(this));
    else
        adopt(new WizardSelectListH(this));
    m_note = new QLabel(this);
    m_note->setWordWrap(true);
    m_note->setTextFormat(Qt::PlainText);
    m_note->hide();
    pageLayout->addWidget(m_note);
}

void ImportPickPage::SetCaptions(const QString& available, const QString& chosen, const QString& add,
                                 const QString& addAll, const QString& remove, const QString& removeAll)
{
    m_groupAvailable->setTitle(available);
    m_groupChosen->setTitle(chosen);
    m_add->setText(add);
    m_addAll->setText(addAll);
    m_remove->setText(remove);
    m_removeAll->setText(removeAll);
}

void ImportPickPage::Show(const PickList& list)
{
    FillList(m_available, list.Available(), m_icon);
    FillList(m_chosen, list.Chosen(), m_icon);
}

void ImportPickPage::SetNote(const QString& note)
{
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
}

QList<int> ImportPickPage::SelectedAvailable() const
{
    return SelectedRows(m_available);
}

QList<int> ImportPickPage::SelectedChosen() const
{
    return SelectedRows(m_chosen);
}
