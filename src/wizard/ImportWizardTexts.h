// Indices of the interface texts (UiText and UiTextExtra) the import wizard shows.
#pragma once

namespace ImportWizardText {
enum : int
{
    ShipIdColumn = 31,
    ShipNameColumn = 32,
    LanguageColumn = 42,
    NameColumn = 43,
    DescriptionColumn = 44,
    AddLanguage = 46,
    RemoveLanguage = 47,
    ChangeName = 48,
    ChangeDescription = 49,
    ClearList = 50,
    ChangeNameCaption = 51,
    ChangeNameLabel = 52,
    ChangeDescriptionCaption = 53,
    ChangeDescriptionLabel = 54,
    Yes = 81,
    No = 82,
    TextFilesFilter = 83,
    TextFilesCaption = 84,
    LanguageTextCaption = 85,
    LanguageLabel = 86,
    NameLabel = 87,
    DescriptionLabel = 88,
    Ok = 89,
    CancelButton = 90,
    SectionColumn = 104,
    DataColumn = 105,
    IdColumn = 122,
    ModFilter = 128,
    ModCaption = 129,
    NoShipTableCaption = 130,
    NoShipTableText = 131,
    Caption = 132,
    Cancel = 133,
    Next = 134,
    Back = 135,
    Help = 136,
    ShipTitle = 137,
    ModelTitle = 138,
    CockpitTitle = 139,
    DummyTitle = 140,
    ComponentTitle = 141,
    AvailableGroup = 142,
    ChosenGroup = 143,
    Add = 144,
    AddAll = 145,
    Remove = 146,
    RemoveAll = 147,
    Preparing = 148,
    TextTitle = 222,
    RightClickHint = 223,
    ImportFiles = 224,
    ImportDirectory = 225,
    TextPageCaption = 226,
    TextPageLabel = 227,
    TextDirectoryCaption = 228,
    TextureTitle = 364,
    TextureQuestionCaption = 386,
    TextureQuestionText = 387
};
} // namespace ImportWizardText

namespace ImportWizardExtraText {
enum : int
{
    Finish = 20,
    NotInMod = 21
};
} // namespace ImportWizardExtraText
