// A page of the import wizard with two lists: the entries the mod offers and
// the entries taken for the ship, and buttons that move entries between them.
// Models and textures use the form with the lists one above the other,
// cockpits the one with the lists side by side. The page shows a PickList;
// the wizard moves entries in the list and shows it again.
#pragma once

#include "wizard/ImportParts.h"

#include <QIcon>
#include <QWizardPage>

class QGroupBox;
class QLabel;
class QListWidget;
class QPushButton;

class ImportPickPage : public QWizardPage
{
    Q_OBJECT
public:
    enum class Layout
    {
        ListsAbove,
        ListsBeside
    };

    ImportPickPage(Layout layout, const QIcon& icon, QWidget* parent = nullptr);

    // Captions: the two group boxes and the four buttons.
    void SetCaptions(const QString& available, const QString& chosen, const QString& add,
                     const QString& addAll, const QString& remove, const QString& removeAll);

    void Show(const PickList& list);
    // A line below the lists; hidden while empty.
    void SetNote(const QString& note);

    // Rows selected in each list, ascending.
    QList<int> SelectedAvailable() const;
    QList<int> SelectedChosen() const;

    QListWidget* AvailableList() const { return m_available; }
    QListWidget* ChosenList() const { return m_chosen; }
    QPushButton* AddButton() const { return m_add; }
    QPushButton* AddAllButton() const { return m_addAll; }
    QPushButton* RemoveButton() const { return m_remove; }
    QPushButton* RemoveAllButton() const { return m_removeAll; }

private:
    QIcon m_icon;
    // The widgets of the form, which is a child of the page.
    QGroupBox* m_groupAvailable = nullptr;
    QGroupBox* m_groupChosen = nullptr;
    QListWidget* m_available = nullptr;
    QListWidget* m_chosen = nullptr;
    QPushButton* m_add = nullptr;
    QPushButton* m_addAll = nullptr;
    QPushButton* m_remove = nullptr;
    QPushButton* m_removeAll = nullptr;
    QLabel* m_note = nullptr;
};
