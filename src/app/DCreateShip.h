// The main window and the one holder of the document.
//
// How the window is put together. The form (CreateShip, from its .ui) is the
// working copy of the open package: its line edits, check boxes, lists and
// the raw ship line hold the ship, and no model stands behind them. The
// window itself is thin. It keeps the design's members and slots, but each
// slot hands its work to a part the window owns:
//
//   FormBinding              which widget holds which field of ShipPackage
//   FileListController (2)   the model list and the other-files list
//   ScriptListController     the script list
//   TextListController       the language texts, with their import
//   Dummy/Component/CockpitListController   the rows for the game's tables
//   PackageDocument          build, show, modified check, open, save; SavedPackage
//   ExtractionFlow           taking a package apart
//   EditMode                 a ship installed in the game, opened with -e and saved back
//   BalanceController        Balance Ship and the balance profiles (src/balance)
//   ModImport                taking a ship out of a finished mod (the import wizard)
//   ShipConfigFlow           Customize Ship: the ship configuration dialog
//   GameTextStore            the game's texts, classes and variations
//   AppSettings              config.dat as one value (src/core)
//
// Every part gets a WindowContext: the parent for its dialogs, the Prompter
// through which every standard dialog is asked, the interface texts, the
// settings and the window's Slot_Modified. A new feature adds a part of its
// own in its own files, and the window's slot becomes a one-line call.
//
// Long jobs never run in the slot the user triggered: the slot makes the
// window busy, shows a status text and starts a 100 ms single-shot timer
// whose slot does the work and ends with SetBusy(true).
#pragma once

#include "app/GameTextStore.h"
#include "core/AppSettings.h"
#include "forms/CreateShip.h"
#include "forms/Prompter.h"
#include "gamedata/ShipLine.h"
#include "language/UiTexts.h"
#include "package/ShipPackage.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

class BalanceController;
class CockpitListController;
class ComponentListController;
class DummyListController;
class EditMode;
class ExtractionFlow;
class FileListController;
class FormBinding;
class ModImport;
class PackageDocument;
class ScriptListController;
class ShipConfigFlow;
class StatusProgressBar;
class TextListController;
class WListView;
struct WindowContext;

// Joins the raw argument vector (from its second token on) into option
// entries, so that a path with blanks works whether or not the shell kept it
// together. A token that starts with "-" (quotes aside) starts a new entry.
QStringList SplitArguments(int argc, char** argv);
QStringList SplitArguments(const QStringList& tokens);

class DCreateShip : public CreateShip
{
    Q_OBJECT
public:
    // The prompter answers every standard dialog; null means the real ones.
    explicit DCreateShip(std::unique_ptr<Prompter> prompter = nullptr, QWidget* parent = nullptr,
                         const char* name = nullptr);
    ~DCreateShip() override;

    // Acts on the entries of the command line; false when the window is not
    // to be shown (an extraction was all that was asked for).
    bool ParseCommandLine(const QStringList& entries);
    // Starts reading the game's texts through a timer when the settings ask for it.
    void StartTextLoad();

    void UpdateCaption();
    bool IsModified() const;
    bool HasContent() const;
    // Asks before unsaved content goes; false when the user backs out.
    bool ClearDocument();
    void SetBusy(bool enable);
    void CleanWorkDirs();

    void LoadSettings();
    void SaveSettings();
    void DetectGameDirs();
    void LoadUiTexts(bool read);
    // Brings one package entry into its stored form (compiled with x2bc when
    // `compile` is set and the X2BC setting allows, packed when it is a
    // model) and returns the path of the file to store.
    QString PrepareFile(FileEntry& file, bool compile);

    bool OpenPackage(const QString& path);
    bool Save(const QString& path);
    // Reads the form into a new record for a save; the form's ship line takes
    // the settled line.
    std::unique_ptr<ShipPackage> BuildPackage();
    // Fills the form from a record whose files lie in WorkDir.
    void ShowPackage(const ShipPackage& record);
    // Sets the status bar's progress bar to `done` of `total`.
    void ShowProgress(int64_t done, int64_t total);
    // Edit mode: the ship named by EditTarget, installed in the game.
    virtual void StartEditMode();
    // Parses one plain language page of the base language into the game's texts.
    void ParseGameText(const QString& path);

    // Narrow access for the parts' callers and for tests.
    Prompter& prompter() const { return *m_prompter; }
    const QStringList& uiText() const { return m_uiText; }
    const QStringList& uiTextExtra() const { return m_uiTextExtra; }
    const QList<LanguageEntry>& languages() const { return m_languages; }
    const AppSettings& settings() const { return m_settings; }
    void setSettings(const AppSettings& settings) { m_settings = settings; }
    const GameTextStore& gameTexts() const { return m_gameTexts; }
    PackageDocument& document() const { return *m_document; }
    const ExtractionFlow& extraction() const { return *m_extraction; }
    BalanceController& balance() const { return *m_balance; }
    ModImport& modImport() const { return *m_modImport; }
    ShipConfigFlow& shipConfig() const { return *m_shipConfig; }
    const QString& editTarget() const { return m_editTarget; }
    WListView* modelList() const { return m_modelList; }
    WListView* otherList() const { return m_otherList; }
    WListView* scriptList() const { return m_scriptList; }
    StatusProgressBar* progressBar() const { return m_progressBar; }

public slots:
    void Slot_New() override;
    void Slot_Open() override;
    void Slot_OpenFile();
    void Slot_Save() override;
    void Slot_SaveAs() override;
    void Slot_SaveFile();
    void Slot_Close() override;
    void Slot_Config() override;
    void Slot_Modified();
    void GetText();
    void Slot_ExtractShip() override;
    void Slot_StartExtract();
    // Take a ship line, or cockpit lines, out of a table that the user
    // chooses: a plain .txt, a packed .pck or a catalog.
    void Slot_LoadShip() override;
    void Slot_LoadCockpit() override;
    // Balance the raw ship line against a profile; look after the profiles.
    void Slot_Balance() override;
    void Slot_ManageProfiles() override;
    // Takes a ship with everything it needs out of a finished mod.
    void Slot_ImportWizard() override;
    // Customize Ship: the ship configuration dialog over the form's ship line.
    void Slot_CustomiseShip() override;

    // The content lists: models, other files, scripts, language texts, the
    // scene file fields and the picture field.
    void Slot_Dropped(const QString& text);
    void Slot_OtherDropped(const QString& text);
    void Slot_ScriptDropped(const QString& text);
    void Slot_ModelMenu(QTreeWidgetItem* item, const QPoint& globalPos, int column);
    void Slot_OtherMenu(QTreeWidgetItem* item, const QPoint& globalPos, int column);
    void Slot_ScriptMenu(QTreeWidgetItem* item, const QPoint& globalPos, int column);
    void Slot_TextMenu(QTreeWidgetItem* item, const QPoint& globalPos, int column);
    void Slot_DCTextMenu(QTreeWidgetItem* item, int column);
    void Slot_AddModel();
    void Slot_ChangeModel();
    void Slot_ChangeDir();
    void Slot_RemoveModel();
    void Slot_SwitchScene();
    void Slot_SwitchCockpit();
    void ClearModels();
    void Slot_AddFile();
    void Slot_ChangeOther();
    void Slot_ChangeOtherDir();
    void Slot_RemoveFile();
    void ClearOther();
    void Slot_AddScript();
    void Slot_RemoveScript();
    void ClearScripts();
    void Slot_AddLanguage();
    void Slot_RemoveLanguage();
    void Slot_ChangeName();
    void Slot_ChangeDesc();
    void ClearText();
    void Slot_ImportText();
    void Slot_ImportTextDir();
    void Slot_SelectSceneFile() override;
    void Slot_SelectSceneFileCp() override;
    void Slot_ClearShipScene() override;
    void Slot_ClearCockpitScene() override;
    void Slot_SelectPic() override;

    // The rows for the game's tables: dummies, components and cockpits.
    void Slot_ImportDummy() override;
    void Slot_ImportComp() override;
    void Slot_DummyMenu(QTreeWidgetItem* item, const QPoint& globalPos, int column);
    void Slot_CompMenu(QTreeWidgetItem* item, const QPoint& globalPos, int column);
    void Slot_CockpitMenu(QTreeWidgetItem* item, const QPoint& globalPos, int column);
    void Slot_AddDummy();
    void Slot_RemoveDummy();
    void Slot_ChangeSection();
    void Slot_ChangeData();
    void ClearDummy();
    void Slot_RemoveComp();
    void ClearComp();
    void Slot_RemoveCockpit();
    void ClearCockpit();

public:
    // The context menus a right click on `item` (null: no row) gets; the
    // caller runs and then destroys the menu.
    std::unique_ptr<QMenu> BuildModelMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildOtherMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildScriptMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildTextMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildDummyMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildCompMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildCockpitMenu(QTreeWidgetItem* item);
    // The data of the dummy rows of section SDTYPE_GUN: the ship's gun bodies.
    QStringList GunBodies() const;

private:
    WindowContext Context();
    void CreateParts();
    void AddListColumns();
    void ConnectSignals();
    void AskForGameDir();
    void CreateProgressBar();
    void StartBusyJob(const QString& status);
    void FinishBusyJob();
    bool ValidateForSave();
    void StartSave(bool alwaysAsk);

    std::unique_ptr<Prompter> m_prompter;
    AppSettings m_settings;
    QStringList m_uiText;
    QStringList m_uiTextExtra;
    QList<LanguageEntry> m_languages;
    GameTextStore m_gameTexts;
    QString m_editTarget; // the value of -e; not empty means edit mode
    QString m_pathToOpen; // hand-over from Slot_Open to Slot_OpenFile
    QString m_pathToSave; // hand-over from Slot_Save and Slot_SaveAs to Slot_SaveFile

    // Widgets made at run time, owned by their frames and the status bar.
    WListView* m_modelList = nullptr;
    WListView* m_scriptList = nullptr;
    WListView* m_otherList = nullptr;
    StatusProgressBar* m_progressBar = nullptr;

    std::unique_ptr<FormBinding> m_form;
    std::unique_ptr<FileListController> m_models;
    std::unique_ptr<FileListController> m_others;
    std::unique_ptr<ScriptListController> m_scripts;
    std::unique_ptr<TextListController> m_texts;
    std::unique_ptr<DummyListController> m_dummies;
    std::unique_ptr<ComponentListController> m_components;
    std::unique_ptr<CockpitListController> m_cockpits;
    std::unique_ptr<PackageDocument> m_document;
    std::unique_ptr<ExtractionFlow> m_extraction;
    std::unique_ptr<EditMode> m_editMode;
    std::unique_ptr<BalanceController> m_balance;
    std::unique_ptr<ModImport> m_modImport;
    std::unique_ptr<ShipConfigFlow> m_shipConfig;
};
