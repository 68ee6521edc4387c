#include "forms/CreateShip.h"

#include "forms/FormSupport.h"

CreateShip::CreateShip(QWidget* parent, const char* name, Qt::WindowFlags flags) : QMainWindow(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setupUi(this);
    for (QTreeWidget* list : {ListText, ListDummy, ListComp, ListCockpit})
        FormSupport::SortByFirstColumn(list);
    connectActions();
    connectButtons();
    languageChange();
}

void CreateShip::connectActions()
{
    connect(fileNew, &QAction::triggered, this, &CreateShip::Slot_New);
    connect(fileOpen, &QAction::triggered, this, &CreateShip::Slot_Open);
    connect(fileSave, &QAction::triggered, this, &CreateShip::Slot_Save);
    connect(fileSaveAs, &QAction::triggered, this, &CreateShip::Slot_SaveAs);
    connect(fileLoad, &QAction::triggered, this, &CreateShip::Slot_LoadShip);
    connect(fileImport, &QAction::triggered, this, &CreateShip::Slot_ImportWizard);
    connect(fileExit, &QAction::triggered, this, &QWidget::close);
    connect(settingConfig, &QAction::triggered, this, &CreateShip::Slot_Config);
    connect(settingManage, &QAction::triggered, this, &CreateShip::Slot_ManageProfiles);
    connect(toolsExtract, &QAction::triggered, this, &CreateShip::Slot_ExtractShip);
    connect(toolsBalance, &QAction::triggered, this, &CreateShip::Slot_Balance);
    connect(toolsConfig, &QAction::triggered, this, &CreateShip::Slot_CustomiseShip);
}

void CreateShip::connectButtons()
{
    // ButLoad and ButSave belong to the working class.
    connect(ButImport, &QPushButton::clicked, this, &CreateShip::Slot_ImportWizard);
    connect(ButCustom, &QPushButton::clicked, this, &CreateShip::Slot_CustomiseShip);
    connect(ButBalance, &QPushButton::clicked, this, &CreateShip::Slot_Balance);
    connect(ButSaveAs, &QPushButton::clicked, this, &CreateShip::Slot_SaveAs);
    connect(ButClose, &QPushButton::clicked, this, &CreateShip::Slot_Close);
    connect(ButSceneFile, &QPushButton::clicked, this, &CreateShip::Slot_SelectSceneFile);
    connect(ButSceneFileCp, &QPushButton::clicked, this, &CreateShip::Slot_SelectSceneFileCp);
    connect(ButShipClear, &QPushButton::clicked, this, &CreateShip::Slot_ClearShipScene);
    connect(ButCockpitClear, &QPushButton::clicked, this, &CreateShip::Slot_ClearCockpitScene);
    connect(ButDummy, &QPushButton::clicked, this, &CreateShip::Slot_ImportDummy);
    connect(ButComp, &QPushButton::clicked, this, &CreateShip::Slot_ImportComp);
    connect(ButLoadCockpit, &QPushButton::clicked, this, &CreateShip::Slot_LoadCockpit);
    connect(ButScreen, &QPushButton::clicked, this, &CreateShip::Slot_SelectPic);

    // An existing text of the game replaces the package's own language rows.
    connect(CheckExisting, &QCheckBox::toggled, SpinOrgDesc, &QWidget::setEnabled);
    connect(CheckExisting, &QCheckBox::toggled, ListText, &QWidget::setDisabled);
}

void CreateShip::languageChange()
{
    retranslateUi(this);
}

void CreateShip::Slot_New() {}
void CreateShip::Slot_Open() {}
void CreateShip::Slot_Save() {}
void CreateShip::Slot_SaveAs() {}
void CreateShip::Slot_LoadShip() {}
void CreateShip::Slot_ImportWizard() {}
void CreateShip::Slot_Config() {}
void CreateShip::Slot_ManageProfiles() {}
void CreateShip::Slot_ExtractShip() {}
void CreateShip::Slot_Balance() {}
void CreateShip::Slot_CustomiseShip() {}
void CreateShip::Slot_Close() {}
void CreateShip::Slot_SelectSceneFile() {}
void CreateShip::Slot_SelectSceneFileCp() {}
void CreateShip::Slot_ClearShipScene() {}
void CreateShip::Slot_ClearCockpitScene() {}
void CreateShip::Slot_ImportDummy() {}
void CreateShip::Slot_ImportComp() {}
void CreateShip::Slot_LoadCockpit() {}
void CreateShip::Slot_SelectPic() {}
