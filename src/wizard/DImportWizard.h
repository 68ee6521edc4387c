// The import wizard: walks the user through one mod catalog. The first page
// picks a ship; leaving it works out the ship's parts (ImportSession); the
// later pages show what was found, ticked and chosen, for the user to
// correct. Pages the mod cannot fill (no Dummies, TCockpits or Components
// table, no textures) are left out. Finish is offered from the second page on.
#pragma once

#include "wizard/ImportSession.h"

#include <QStringList>
#include <QWizard>

#include <memory>

class ImportCheckPage;
class ImportPickPage;
class ImportShipPage;
class ImportTextPage;
class LanguageText;
class Prompter;
class QMenu;
class QTreeWidgetItem;

// Settings of the main window the wizard works with.
struct ImportWizardSettings
{
    QString ProgramDir; // Icons/ lie below it
    QString TextDir;    // where a text import starts
    QString GameDir;    // its t/ is the start of a directory import without TextDir
    QString X2bcPath;   // turns binary models into text for the texture scan
};

class DImportWizard : public QWizard
{
    Q_OBJECT
public:
    enum PageId : int
    {
        ShipPage,
        DummyPage,
        ModelPage,
        CockpitPage,
        ComponentPage,
        TexturePage,
        TextPage
    };

    // `session` must have been opened. The texts and the prompter are borrowed.
    DImportWizard(std::unique_ptr<ImportSession> session, Prompter& prompter, const QStringList& uiText,
                  const QStringList& uiTextExtra, ImportWizardSettings settings, QWidget* parent = nullptr);
    ~DImportWizard() override;

    ImportSession& Session() { return *m_session; }
    // Unpacks the chosen files and gathers everything for the main window.
    ImportResult Result() const { return m_session->Finish(); }

    ImportShipPage* ShipList() const { return m_shipPage; }
    ImportPickPage* ModelList() const { return m_modelPage; }
    ImportPickPage* TextureList() const { return m_texturePage; }
    ImportPickPage* CockpitList() const { return m_cockpitPage; }
    ImportCheckPage* DummyTree() const { return m_dummyPage; }
    ImportCheckPage* ComponentTree() const { return m_componentPage; }
    ImportTextPage* TextList() const { return m_textPage; }

    // What happens on the way into each page; see showPage.
    void CollectShipParts();
    void FillCockpitLists();
    void CollectDummyModels();
    void ScanModelTextures();

    // The context menu of the text list as a right click on `item` (null: no
    // row) builds it.
    std::unique_ptr<QMenu> BuildTextMenu(QTreeWidgetItem* item);

public slots:
    // Runs on every page change: leaving the ship page collects the ship's
    // parts; entering the models page follows the ticked dummies, the
    // textures page scans the models, the texts page reads the ship's texts.
    void showPage(int id);
    void Slot_SelectedShip(QTreeWidgetItem* item);
    void Slot_SelectShip(QTreeWidgetItem* item);

    void Slot_AddModel();
    void Slot_AddAllModel();
    void Slot_RemoveModel();
    void Slot_RemoveAllModel();
    void Slot_AddTexture();
    void Slot_AddAllTexture();
    void Slot_RemoveTexture();
    void Slot_RemoveAllTexture();
    void Slot_AddCockpit();
    void Slot_AddAllCockpit();
    void Slot_RemoveCockpit();
    void Slot_RemoveAllCockpit();

    void Slot_TextMenu(const QPoint& position);
    void Slot_AddLanguage();
    void Slot_RemoveLanguage();
    void Slot_ChangeName();
    void Slot_ChangeDesc();
    void Slot_ClearText();
    void Slot_ImportFile();
    void Slot_ImportDir();

protected:
    // Runs the dialog that asks for a new language row; true when accepted.
    // Tests replace it.
    virtual bool ExecLanguageText(LanguageText& dialog);

private:
    void AddPages();
    void ConnectPickPage(ImportPickPage* page, void (DImportWizard::*add)(), void (DImportWizard::*addAll)(),
                         void (DImportWizard::*remove)(), void (DImportWizard::*removeAll)());
    void ShowParts();
    void ShowNotFound();
    void ChangeTextColumn(int column, int captionIndex, int labelIndex);
    QString Text(int index) const { return m_uiText.value(index); }

    std::unique_ptr<ImportSession> m_session;
    Prompter& m_prompter;
    const QStringList& m_uiText;
    const QStringList& m_uiTextExtra;
    ImportWizardSettings m_settings;
    int m_lastPage = -1;

    // The pages are children of the wizard; absent pages stay null.
    ImportShipPage* m_shipPage = nullptr;
    ImportCheckPage* m_dummyPage = nullptr;
    ImportPickPage* m_modelPage = nullptr;
    ImportPickPage* m_cockpitPage = nullptr;
    ImportCheckPage* m_componentPage = nullptr;
    ImportPickPage* m_texturePage = nullptr;
    ImportTextPage* m_textPage = nullptr;
};
