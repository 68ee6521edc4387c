// Names of the interface texts (indices into UiText and UiTextExtra, read
// from hw_languages.xml) that the main window and its parts use. The
// language file says beside each text where it is shown.
#pragma once

#include <QString>

// The head of every caption of the main window: the program and its version.
inline QString WindowCaptionHead()
{
    return QStringLiteral("X3 - Hullwright V") + QString::asprintf("%.2f", 2.0);
}

namespace Txt {
enum : int
{
    // Menus and actions; an action's tool tip is the index behind its text.
    MenuFile = 0,
    MenuSettings = 1,
    MenuTools = 191,
    ActionNew = 2,
    ActionOpen = 4,
    ActionSave = 6,
    ActionSaveAs = 8,
    ActionLoadShip = 10,
    ActionImportWizard = 12,
    ActionExit = 14,
    ActionConfiguration = 16,
    ActionManageProfiles = 311,
    ActionExtract = 192,
    ActionBalance = 309,
    ActionConfigureShip = 313,

    // Tabs.
    TabMain = 20,
    TabText = 21,
    TabScene = 22,
    TabModel = 23,
    TabDummy = 24,
    TabComp = 25,
    TabCockpits = 26,
    TabRaw = 124,
    TabUpdate = 169,
    TabScripts = 179,
    TabExtra = 201,
    TabOther = 229,

    // Buttons and check boxes.
    ButtonLoad = 18,
    ButtonImport = 19,
    ButtonSave = 27,
    ButtonSaveAs = 28,
    ButtonClose = 29,
    ButtonImportDummies = 103,
    ButtonImportComponents = 121,
    ButtonImportCockpits = 126,
    ButtonCustomise = 208,
    ButtonBalance = 301,
    CheckUseGameDescription = 363,
    CheckReplacesShip = 397,
    CheckLanguageText = 396,
    YardArgon = 36,
    YardBoron = 37,
    YardParanid = 38,
    YardTeladi = 39,
    YardSplit = 40,
    YardPirates = 41,
    YardFriendly = 260,
    YardXenon = 261,
    GroupShipyards = 35,

    // Labels, shown bold with a colon.
    LabelWeb = 170,
    LabelMirror1 = 171,
    LabelMirror2 = 172,
    LabelShipId = 31,
    LabelShipName = 32,
    LabelAuthor = 33,
    LabelVersion = 34,
    LabelShipScene = 101,
    LabelCockpitScene = 102,
    LabelScreenshot = 202,
    LabelComment = 203,
    LabelScripts = 180,

    // Column titles.
    ColumnLanguage = 42,
    ColumnShipName = 43,
    ColumnDescription = 44,
    ColumnFile = 91,
    ColumnGameDir = 92,
    ColumnSection = 104,
    ColumnData = 105,
    ColumnId = 122,
    ColumnIndex = 125,
    ColumnScript = 181,
    ColumnSize = 182,

    // The caption and the common buttons of boxes.
    NewShipCaption = 30,
    EditModeCaption = 200, // before the installed ship's name and author
    Ok = 60,
    Yes = 81,
    No = 82,
    DialogOk = 89,
    DialogCancel = 90,

    // Documents: open, save, unsaved changes.
    PackageFilter = 65,
    OpenCaption = 66,
    OpenFailed = 63,
    OpenFailedText = 64,
    StatusOpening = 67,
    StatusSaving = 68,
    SaveCaption = 69,
    MissingInformation = 70,
    MissingName = 71,
    MissingAuthor = 72,
    MissingId = 73,
    MissingShipLine = 74,
    MissingScene = 362,
    SaveFailed = 75,
    SaveFailedText = 76,
    Saved = 77,
    SavedText = 78,
    StatusAddingFile = 360,
    StatusCompressing = 361,
    UnsavedCaption = 393,
    UnsavedText = 394,

    // Settings dialog.
    ModDirCaption = 158,
    ModelDirCaption = 159,
    TypesDirCaption = 160,
    SaveDirCaption = 161,
    X2bcCaption = 163,
    ScriptDirCaption = 190,

    // Game directory and start.
    GameDirCaption = 235,
    InvalidGameDir = 353,
    InvalidGameDirText = 354,
    StatusReadingTexts = 350,

    // Ship tables and their selection.
    ShipSelectionCaption = 61,
    ButtonSelect = 62,
    TableExtractFailed = 58,
    TableExtractFailedText = 59,
    ShipTableFilter = 55,
    CatalogFilter = 56,
    ShipTableCaption = 57,

    // Content lists: models, other files, scripts.
    TargetDirCaption = 93,
    ModelTargetDirLabel = 94,
    ModelFilter = 95,
    ModelCaption = 96,
    MenuAdd = 97,
    MenuChangeFile = 98,
    MenuChangeDir = 99,
    MenuRemove = 100,
    MenuClearList = 50,
    MenuSwitchScene = 206,
    MenuSwitchCockpit = 207,
    MenuAddFile = 230,
    MenuRemoveFile = 231,
    AnyFileFilter = 232,
    FileCaption = 233,
    FileTargetDirLabel = 234,
    ScriptFilter = 183,
    ScriptCaption = 184,
    SizeBytes = 185, // the next three are KB, MB and GB
    PictureFilter = 204,
    PictureCaption = 205,

    // Language texts.
    MenuImportText = 45,
    MenuImportTextDir = 355,
    MenuAddLanguage = 46,
    MenuRemoveLanguage = 47,
    MenuChangeName = 48,
    MenuChangeDescription = 49,
    ChangeNameCaption = 51,
    ChangeNameLabel = 52,
    ChangeDescriptionCaption = 53,
    ChangeDescriptionLabel = 54,
    LanguageFileFilter = 83,
    LanguageFileCaption = 84,
    LanguageTextCaption = 85,
    LanguageTextLanguage = 86,
    LanguageTextName = 87,
    LanguageTextDescription = 88,
    TextDirCaption = 162,
    TextPageCaption = 226,
    TextPageLabel = 227,

    // Dummies, components and cockpits.
    MenuAddDummy = 113,
    MenuRemoveDummy = 114,
    MenuChangeSection = 115,
    MenuChangeData = 116,
    DummySectionCaption = 117,
    DummySectionLabel = 118,
    DummyDataCaption = 119,
    DummyDataLabel = 120,
    MenuRemoveComponent = 123,
    MenuRemoveCockpit = 127,

    // Extraction.
    ExtractTargetCaption = 194,
    ExtractSourceCaption = 195,
    Extracted = 196,
    ExtractedText = 197,
    StatusExtracting = 198,
    DirectoryNotFound = 199,
};
} // namespace Txt

// The texts of the extra table.
namespace TxtExtra {
enum : int
{
    NewerFormatButton = 0,
    NewerFormatCaption = 1,
    NewerFormatText = 2,
    UnsafeNameText = 3,
    // An extraction whose files could not all be written.
    ExtractWriteFailed = 40,
    ExtractWriteFailedText = 41,
    ExtractIncompleteText = 42,
};
} // namespace TxtExtra
