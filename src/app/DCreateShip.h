// The main window and the one holder of the document.
//
// The form itself is the working copy of the open ship package: the line
// edits, check boxes, lists and the raw text field hold the ship, and there is
// no model behind them. A ShipPackage exists only as the record built for a
// save and as SavedPackage, the image of the last save or open against which
// IsModified compares the form.
#pragma once

#include "forms/CreateShip.h"
#include "forms/Prompter.h"
#include "language/GameText.h"
#include "language/UiTexts.h"
#include "package/ShipPackage.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

class StatusProgressBar;
class WListView;

// The TShips line of a new ship: 65 fields and a trailing semicolon.
extern const char* const DefaultShipLine;

// Joins the raw argument vector (from its second token on) into option
// entries, so that a path with blanks works whether or not the shell kept it
// together. A token that starts with "-" (quotes aside) starts a new entry.
QStringList SplitArguments(int argc, char** argv);
QStringList SplitArguments(const QStringList& tokens);

// Reads data/classes or data/variant: "<id>:<name>" lines, "//" comments.
// Lines without a number, and in the classes file lines of id 0, are skipped;
// a variant of id 0 is kept when it has a name.
QList<IdName> ReadIdNameFile(const QString& path, bool isVariantFile);

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

    Prompter& prompter() const { return *m_prompter; }
    const QStringList& uiText() const { return UiText; }
    const QStringList& uiTextExtra() const { return UiTextExtra; }

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
    // Takes a ship line, or cockpit lines, out of a table that the user
    // chooses: a plain .txt, a packed .pck or a catalog.
    void Slot_LoadShip() override;
    void Slot_LoadCockpit() override;

public:
    // Operations whose work lands with the package reader, writer, edit mode
    // and extraction; the window's flow around them is complete.
    bool OpenPackage(const QString& path);
    bool Save(const QString& path);
    // Reads the form into a new record for a save. The ship line is settled
    // on the way (scene fields, turret cockpits by name, the id as its last
    // field) and TextRaw takes it.
    std::unique_ptr<ShipPackage> BuildPackage();
    // Fills the form from a record whose files lie in WorkDir.
    void ShowPackage(const ShipPackage& record);
    // Sets the status bar's progress bar to `done` of `total`.
    void ShowProgress(int64_t done, int64_t total);
    virtual void StartEditMode();
    void AskExtractTarget(const QString& package, bool quiet);
    void ExtractTo(const QString& package, const QString& directory, bool quiet);

    // --- Members, in the order the window keeps them.
    WListView* ModelList = nullptr;
    WListView* ScriptList = nullptr;
    WListView* OtherList = nullptr;
    QString PathToSave;
    QString PathToOpen;
    QString CurrentFile;
    QString ExtractSource;
    QString ExtractTarget;
    QString ModDir, ModelDir, SaveDir, TypeDir, TextDir, X2bcDir, ScriptDir;
    QString DefAuthor, DefWeb, DefMirror1, DefMirror2;
    QString EditTarget;
    QString ModName;
    QString BaseLang = "44";
    StatusProgressBar* ProgressBar = nullptr;
    QString Language = "English";
    QList<LanguageEntry> Languages;
    QList<ShipPackage> InstalledShips;
    QStringList GameDirs;
    bool X2BC = false;
    bool SaveWeb = false;
    bool Prefix = false;
    int32_t UpdateTime = 0;
    QStringList UiText;
    QStringList UiTextExtra;
    int32_t Buffer = 0;
    int32_t FakePatch = 0;
    QStringList ShipList;
    bool ReadTextAtStart = true;
    bool ReadTextTableAtStart = true;
    std::unique_ptr<ShipPackage> SavedPackage;
    QList<IdName> ShipClasses;
    QList<IdName> ShipVariants;
    QStringList ClassNames;
    QStringList VariantNames;
    bool TextLoaded = false;
    // The texts of pages 17 and 2006 of the base language, in the order read.
    QList<GameText> GameTextList;

    // Parses one plain language file of the base language into GameTextList,
    // the variant names and the class names, then resolves "{17,<id>}"
    // references among the variant names.
    void ParseGameText(const QString& path);
    // Adds a ListText row from the plain language file at `path` when it holds
    // the name of the ship in TextRaw; the language code is the first two
    // characters of `sourceName`'s file name. True when a row was added.
    bool ImportTextFile(const QString& path, const QString& sourceName);
    // Imports the language file at `path` (plain, or packed .pck); true when a
    // row was added.
    bool ImportLanguageFile(const QString& path);

    // --- The content lists: models, other files, scripts, language texts,
    // the scene file fields and the picture field.
public slots:
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
    // Reading a ship's texts out of the game's language files; the text menu offers them.
    virtual void Slot_ImportText();
    virtual void Slot_ImportTextDir();
    void Slot_SelectSceneFile() override;
    void Slot_SelectSceneFileCp() override;
    void Slot_ClearShipScene() override;
    void Slot_ClearCockpitScene() override;
    void Slot_SelectPic() override;

public:
    // The context menus as a right click on `item` (null: no row) builds
    // them; the caller runs and then destroys the menu.
    std::unique_ptr<QMenu> BuildModelMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildOtherMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildScriptMenu(QTreeWidgetItem* item);
    std::unique_ptr<QMenu> BuildTextMenu(QTreeWidgetItem* item);
    // A file size for the script list: four blanks, the value and its unit text.
    QString FormatSize(qint64 size) const;

private:
    void ConnectContentLists();
    // Where each id of GameTextList stands, while GetText reads.
    GameTextIndex m_gameTextIndex;

private:
    void CreateLists();
    void AddListColumns();
    void ConnectSignals();
    void AskForGameDir();
    void ReadClassAndVariantFiles();
    void CreateProgressBar();
    bool ValidateForSave();
    void StartSave(bool alwaysAsk);
    bool AddGameDir(const QString& dir);

    std::unique_ptr<Prompter> m_prompter;
};
