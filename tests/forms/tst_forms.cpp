// Tests of the forms: the captions and their restoration, the main window's actions, menus and tool
// bar, the order of tabs, the sorting of list views, the pictures, and the
// connections from buttons and actions to the slots that working classes
// override.

#include "forms/ConfigDialog.h"
#include "forms/ConfigShip.h"
#include "forms/CreateProfile.h"
#include "forms/CreateShip.h"
#include "forms/DBalanceValues.h"
#include "forms/DSelectVariant.h"
#include "forms/ImportDummy.h"
#include "forms/LanguageText.h"
#include "forms/ManageProfile.h"
#include "forms/SelectShip.h"
#include "forms/ShipBalance.h"
#include "forms/WizardComp.h"
#include "forms/WizardDummy.h"
#include "forms/WizardSelectListH.h"
#include "forms/WizardSelectListV.h"
#include "forms/WizardShip.h"
#include "forms/WizardText.h"

#include <QDirIterator>
#include <QHeaderView>
#include <QImage>
#include <QMenu>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QToolBar>

#include <functional>
#include <memory>

namespace {

using FormFactory = std::function<std::unique_ptr<QWidget>()>;

template <typename Form> FormFactory factory()
{
    return [] { return std::make_unique<Form>(); };
}

struct FormInfo
{
    const char* name;
    FormFactory make;
    const char* caption;
};

const std::vector<FormInfo>& allForms()
{
    static const std::vector<FormInfo> forms = {
        {"CreateShip", factory<CreateShip>(), "Qt: X3 - Create Ship"},
        {"ConfigDialog", factory<ConfigDialog>(), "Hullwright - Configuration"},
        {"ConfigShip", factory<ConfigShip>(), "Qt: Configure Ship"},
        {"CreateProfile", factory<CreateProfile>(), "Form5"},
        {"ManageProfile", factory<ManageProfile>(), "Qt: Manage Profiles"},
        {"ShipBalance", factory<ShipBalance>(), "Qt: Balance Ship"},
        {"DBalanceValues", factory<DBalanceValues>(), "Form3"},
        {"SelectShip", factory<SelectShip>(), "Qt: Select Ship"},
        {"DSelectVariant", factory<DSelectVariant>(), "Form1"},
        {"ImportDummy", factory<ImportDummy>(), "Qt: Import Dummies"},
        {"LanguageText", factory<LanguageText>(), "Qt: Language Text"},
        {"WizardShip", factory<WizardShip>(), "Form2"},
        {"WizardDummy", factory<WizardDummy>(), "Form1"},
        {"WizardComp", factory<WizardComp>(), "Form2"},
        {"WizardSelectListV", factory<WizardSelectListV>(), "Form3"},
        {"WizardSelectListH", factory<WizardSelectListH>(), "Form3"},
        {"WizardText", factory<WizardText>(), "Form1"},
    };
    return forms;
}

std::unique_ptr<QWidget> makeForm(const QString& name)
{
    for (const FormInfo& info : allForms())
        if (name == info.name)
            return info.make();
    return nullptr;
}

QStringList actionNames(const QList<QAction*>& actions)
{
    QStringList names;
    for (const QAction* action : actions)
        names << (action->isSeparator() ? QStringLiteral("-") : action->objectName());
    return names;
}

QStringList tabPageNames(const QTabWidget* tabs)
{
    QStringList names;
    for (int i = 0; i < tabs->count(); ++i)
        names << tabs->widget(i)->objectName();
    return names;
}

// --- Subclasses that record which overriding slot ran ------------------------

#define RECORD(slot)                                                                                         \
    void slot() override                                                                                     \
    {                                                                                                        \
        calls << QStringLiteral(#slot);                                                                      \
    }

class CreateShipRecorder : public CreateShip
{
public:
    QStringList calls;
    RECORD(Slot_New)
    RECORD(Slot_Open)
    RECORD(Slot_Save)
    RECORD(Slot_SaveAs)
    RECORD(Slot_LoadShip)
    RECORD(Slot_ImportWizard)
    RECORD(Slot_Config)
    RECORD(Slot_ManageProfiles)
    RECORD(Slot_ExtractShip)
    RECORD(Slot_Balance)
    RECORD(Slot_CustomiseShip)
    RECORD(Slot_Close)
    RECORD(Slot_SelectSceneFile)
    RECORD(Slot_SelectSceneFileCp)
    RECORD(Slot_ClearShipScene)
    RECORD(Slot_ClearCockpitScene)
    RECORD(Slot_ImportDummy)
    RECORD(Slot_ImportComp)
    RECORD(Slot_LoadCockpit)
    RECORD(Slot_SelectPic)
};

class ConfigDialogRecorder : public ConfigDialog
{
public:
    QStringList calls;
    RECORD(Slot_OpenDir)
    RECORD(Slot_OpenModDir)
    RECORD(Slot_OpenModelDir)
    RECORD(Slot_OpenTypesDir)
    RECORD(Slot_OpenSaveDir)
    RECORD(Slot_OpenTextDir)
    RECORD(Slot_OpenScriptDir)
    RECORD(Slot_OpenX2bcDir)
};

class ConfigShipRecorder : public ConfigShip
{
public:
    QStringList calls;
    RECORD(Slot_GetDirectory)
    RECORD(Slot_NewCockpit)
    RECORD(Slot_UpdateGuns)
    RECORD(Slot_AddGun)
    RECORD(Slot_RemoveGun)
    RECORD(Slot_AddTurret)
    RECORD(Slot_RemoveTurret)
    RECORD(Slot_CopyCockpit)
};

class CreateProfileRecorder : public CreateProfile
{
public:
    QStringList calls;
    RECORD(Slot_Done)
    RECORD(Slot_Import)
};

class ShipBalanceRecorder : public ShipBalance
{
public:
    QStringList calls;
    RECORD(Slot_Balance)
    RECORD(Slot_SetAverage)
    RECORD(Slot_Details)
};

class SelectShipRecorder : public SelectShip
{
public:
    QStringList calls;
    RECORD(Slot_OpenFile)
    RECORD(Slot_Selected)
};

class ManageProfileRecorder : public ManageProfile
{
public:
    QStringList calls;
    RECORD(Slot_Create)
    void Slot_Edit(QTreeWidgetItem* item) override
    {
        calls << QStringLiteral("Slot_Edit:") + (item ? item->text(3) : QStringLiteral("null"));
    }
};

#undef RECORD

// Activates a button or an action of the form by name.
bool activate(QWidget* form, const QString& sender)
{
    if (auto* button = form->findChild<QAbstractButton*>(sender)) {
        button->click();
        return true;
    }
    if (auto* action = form->findChild<QAction*>(sender)) {
        action->trigger();
        return true;
    }
    return false;
}

// Each sender must reach exactly its slot, once.
template <typename Recorder>
void checkConnections(const std::vector<std::pair<const char*, const char*>>& table)
{
    Recorder form;
    for (const auto& [sender, slot] : table) {
        form.calls.clear();
        QVERIFY2(activate(&form, sender), sender);
        const QStringList expected = *slot ? QStringList{slot} : QStringList{};
        QVERIFY2(form.calls == expected,
                 qPrintable(QStringLiteral("%1 gave [%2]").arg(sender, form.calls.join(", "))));
    }
}

} // namespace

class FormsTest : public QObject
{
    Q_OBJECT

private slots:
    void captions_data();
    void captions();
    void languageChangeRestoresCaptions_data();
    void languageChangeRestoresCaptions();
    void constructorArguments();
    void mainWindowActions();
    void menusAndToolBar();
    void tabOrder();
    void listViewsSortAscendingByFirstColumn();
    void formImages();
    void actionWindowAndEmblemIcons();
    void runTimeIcons();
    void createShipConnections();
    void dialogSlotConnections();
    void acceptAndRejectButtons_data();
    void acceptAndRejectButtons();
    void enablingToggles();
    void dialButtonsStepByOneLine();
};

void FormsTest::captions_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("base");
    const QStringList widgets = {"WizardShip",        "WizardDummy",       "WizardComp",
                                 "WizardSelectListV", "WizardSelectListH", "WizardText"};
    for (const FormInfo& info : allForms()) {
        const QString base = QString(info.name) == "CreateShip" ? "QMainWindow"
                             : widgets.contains(info.name)      ? "QWidget"
                                                                : "QDialog";
        QTest::newRow(info.name) << QString(info.name) << QString(info.caption) << base;
    }
}

void FormsTest::captions()
{
    QFETCH(QString, form);
    QFETCH(QString, caption);
    QFETCH(QString, base);
    const auto widget = makeForm(form);
    QCOMPARE(widget->windowTitle(), caption);
    QCOMPARE(QString(widget->metaObject()->superClass()->className()), base);
    if (base == "QDialog")
        QVERIFY2(!widget->windowIcon().pixmap(16).isNull(), "a dialog carries a window icon");
}

void FormsTest::languageChangeRestoresCaptions_data()
{
    captions_data();
}

void FormsTest::languageChangeRestoresCaptions()
{
    QFETCH(QString, form);
    QFETCH(QString, caption);
    const auto widget = makeForm(form);
    widget->setWindowTitle("changed");

    // A widget caption and a list column title change as well, where the form has them.
    QAbstractButton* button = widget->findChild<QPushButton*>();
    const QString buttonText = button ? button->text() : QString();
    if (button)
        button->setText("changed");
    QTreeWidget* list = widget->findChild<QTreeWidget*>();
    const QString columnTitle = list ? list->headerItem()->text(0) : QString();
    if (list)
        list->headerItem()->setText(0, "changed");

    QVERIFY(QMetaObject::invokeMethod(widget.get(), "languageChange"));
    QCOMPARE(widget->windowTitle(), caption);
    if (button)
        QCOMPARE(button->text(), buttonText);
    if (list)
        QCOMPARE(list->headerItem()->text(0), columnTitle);
}

void FormsTest::constructorArguments()
{
    ConfigDialog named(nullptr, "settings", true);
    QCOMPARE(named.objectName(), QString("settings"));
    QVERIFY(named.isModal());
    ConfigDialog plain;
    QCOMPARE(plain.objectName(), QString("ConfigDialog"));
    QVERIFY(!plain.isModal());

    QWidget parent;
    WizardText page(&parent, "texts page");
    QCOMPARE(page.objectName(), QString("texts page"));
    QCOMPARE(page.parentWidget(), &parent);

    CreateShip window(nullptr, "main window");
    QCOMPARE(window.objectName(), QString("main window"));
}

void FormsTest::mainWindowActions()
{
    struct Expected
    {
        const char* name;
        const char* text;
        const char* menuText;
        const char* shortcut;
    };
    const Expected actions[] = {
        {"fileNew", "New Ship", "&New Ship...", "Ctrl+N"},
        {"fileOpen", "Open Package", "&Open Package...", "Ctrl+O"},
        {"fileSave", "Save Ship", "&Save Ship...", "Ctrl+S"},
        {"fileSaveAs", "Save As", "Save &As...", "Ctrl+A"},
        {"fileLoad", "Load Ship Data", "&Load Ship Data...", "Ctrl+L"},
        {"fileImport", "Import Ship Wizard", "Import Ship &Wizard", "Ctrl+W"},
        {"fileExit", "Exit", "E&xit", "Ctrl+X"},
        {"settingConfig", "Configuration", "&Configuration", "Ctrl+C"},
        {"settingManage", "Manage Balance Profiles", "Manager Balance Profiles", "Ctrl+M"},
        {"toolsExtract", "Extract Ship", "&Extract Ship", "Ctrl+E"},
        {"toolsBalance", "BalanceShip", "&BalanceShip", "Ctrl+B"},
        {"toolsConfig", "Configure Ship", "&Configure Ship", ""},
    };
    CreateShip window;
    for (const Expected& e : actions) {
        auto* action = window.findChild<QAction*>(e.name);
        QVERIFY2(action, e.name);
        QCOMPARE(action->text(), QString(e.menuText));
        QCOMPARE(action->iconText(), QString(e.text));
        QCOMPARE(action->toolTip(), QString(e.text));
        QCOMPARE(action->shortcut(), QKeySequence(e.shortcut));
        QVERIFY2(!action->icon().pixmap(32).isNull(), e.name);
    }
}

void FormsTest::menusAndToolBar()
{
    CreateShip window;
    QCOMPARE(window.menuBar(), window.MenuBar);
    QStringList titles;
    QList<QMenu*> menus;
    for (QAction* entry : window.MenuBar->actions()) {
        titles << entry->text();
        menus << entry->menu();
    }
    QCOMPARE(titles, (QStringList{"&File", "&Settings", "&Tools"}));
    QCOMPARE(actionNames(menus[0]->actions()),
             QString("fileNew fileOpen - fileSave fileSaveAs - fileLoad fileImport - fileExit").split(' '));
    QCOMPARE(actionNames(menus[1]->actions()), QString("settingConfig - settingManage").split(' '));
    QCOMPARE(actionNames(menus[2]->actions()), QString("toolsExtract - toolsBalance toolsConfig").split(' '));

    auto* toolbar = window.findChild<QToolBar*>("Toolbar");
    QVERIFY(toolbar);
    QCOMPARE(toolbar->windowTitle(), QString("Toolbar"));
    QCOMPARE(window.toolBarArea(toolbar), Qt::TopToolBarArea);
    QCOMPARE(actionNames(toolbar->actions()),
             QString("fileNew - fileOpen fileSave fileSaveAs - fileLoad fileImport - "
                     "toolsExtract toolsBalance toolsConfig - settingConfig "
                     "settingManage")
                 .split(' '));
}

void FormsTest::tabOrder()
{
    CreateShip window;
    QCOMPARE(tabPageNames(window.TabData),
             QString("TabMain TabUpdate TabText TabScene TabModel TabOther TabDummy "
                     "TabComp TCockpits TabScripts TabExtra TabRaw")
                 .split(' '));
    const QStringList titles = {"Main",         "Update",      "Text",    "Scenes",
                                "Other Models", "Other Files", "Dummies", "Components"};
    for (int i = 0; i < titles.size(); ++i)
        QCOMPARE(window.TabData->tabText(i), titles[i]);
    QCOMPARE(window.TabData->tabText(10), QString("Extras"));
    QCOMPARE(window.TabData->tabText(11), QString("Raw Data"));

    ConfigShip config;
    QCOMPARE(tabPageNames(config.TabConfig),
             QString("TabInfo TabMove TabWeapon TabModel TabLasers TabCockpit TabGuns").split(' '));
    QCOMPARE(tabPageNames(config.TabWigGuns), QString("TabAuto TabManual").split(' '));

    // The three run-time list frames are empty and lay their content out without margins.
    for (QFrame* frame : {window.FrameList, window.FrameOther, window.FrameScripts}) {
        auto* layout = qobject_cast<QVBoxLayout*>(frame->layout());
        QVERIFY2(layout, qPrintable(frame->objectName()));
        QCOMPARE(layout->count(), 0);
        QCOMPARE(layout->contentsMargins(), QMargins());
    }
}

void FormsTest::listViewsSortAscendingByFirstColumn()
{
    int lists = 0;
    for (const FormInfo& info : allForms()) {
        const auto form = info.make();
        for (QTreeWidget* list : form->findChildren<QTreeWidget*>()) {
            ++lists;
            const QString where = QString(info.name) + "::" + list->objectName();
            QVERIFY2(list->isSortingEnabled(), qPrintable(where));
            QVERIFY2(list->header()->sortIndicatorSection() == 0, qPrintable(where));
            QVERIFY2(list->header()->sortIndicatorOrder() == Qt::AscendingOrder, qPrintable(where));
        }
    }
    QCOMPARE(lists, 17);

    // Rows added in any order show sorted, which is the order a package takes them in.
    CreateShip window;
    for (const char* language : {"49", "33", "44"})
        window.ListText->addTopLevelItem(new QTreeWidgetItem(QStringList{language, "name", "text"}));
    QStringList shown;
    for (int i = 0; i < window.ListText->topLevelItemCount(); ++i)
        shown << window.ListText->topLevelItem(i)->text(0);
    QCOMPARE(shown, (QStringList{"33", "44", "49"}));

    // The wizard's select lists are plain lists that keep the order of adding.
    WizardSelectListV page;
    QVERIFY(!page.ListMod->isSortingEnabled());
    QVERIFY(!page.ListAdd->isSortingEnabled());
}

void FormsTest::formImages()
{
    int count = 0;
    QDirIterator it(":/forms/images", {"*.png"});
    while (it.hasNext()) {
        const QString path = it.next();
        const QImage image(path);
        QVERIFY2(!image.isNull(), qPrintable(path));
        QVERIFY2(image.width() <= 48 && image.height() <= 52, qPrintable(path));
        ++count;
    }
    // Twelve actions, the dialogs' window icons and eight race emblems.
    QVERIFY2(count >= 27, qPrintable(QString::number(count)));
}

void FormsTest::actionWindowAndEmblemIcons()
{
    CreateShip window;
    QVERIFY(!window.windowIcon().pixmap(32).isNull());
    for (QCheckBox* race : window.GroupShipyard->findChildren<QCheckBox*>()) {
        const QPixmap emblem = race->icon().pixmap(race->iconSize());
        QVERIFY2(!emblem.isNull(), qPrintable(race->objectName()));
        QVERIFY(race->iconSize().width() <= 48 && race->iconSize().height() <= 52);
    }
    QCOMPARE(window.GroupShipyard->findChildren<QCheckBox*>().size(), 8);
}

void FormsTest::runTimeIcons()
{
    const QString dataDir = qEnvironmentVariable("HW_DATA_DIR");
    if (dataDir.isEmpty())
        QSKIP("HW_DATA_DIR is not set");
    const QStringList names = {"add",       "remove",  "edit",    "trash",  "switch", "import",
                               "importdir", "model",   "savedir", "other",  "script", "text",
                               "ship",      "cockpit", "texture", "profile"};
    for (const QString& name : names) {
        const QString path = dataDir + "/Icons/" + name + ".png";
        const QImage image(path);
        QVERIFY2(!image.isNull(), qPrintable(path));
        QVERIFY2(image.width() >= 16 && image.width() <= 32 && image.height() >= 16 && image.height() <= 32,
                 qPrintable(path));
    }
}

void FormsTest::createShipConnections()
{
    checkConnections<CreateShipRecorder>({
        {"fileNew", "Slot_New"},
        {"fileOpen", "Slot_Open"},
        {"fileSave", "Slot_Save"},
        {"fileSaveAs", "Slot_SaveAs"},
        {"fileLoad", "Slot_LoadShip"},
        {"fileImport", "Slot_ImportWizard"},
        {"settingConfig", "Slot_Config"},
        {"settingManage", "Slot_ManageProfiles"},
        {"toolsExtract", "Slot_ExtractShip"},
        {"toolsBalance", "Slot_Balance"},
        {"toolsConfig", "Slot_CustomiseShip"},
        {"ButImport", "Slot_ImportWizard"},
        {"ButCustom", "Slot_CustomiseShip"},
        {"ButBalance", "Slot_Balance"},
        {"ButSaveAs", "Slot_SaveAs"},
        {"ButClose", "Slot_Close"},
        {"ButSceneFile", "Slot_SelectSceneFile"},
        {"ButSceneFileCp", "Slot_SelectSceneFileCp"},
        {"ButShipClear", "Slot_ClearShipScene"},
        {"ButCockpitClear", "Slot_ClearCockpitScene"},
        {"ButDummy", "Slot_ImportDummy"},
        {"ButComp", "Slot_ImportComp"},
        {"ButLoadCockpit", "Slot_LoadCockpit"},
        {"ButScreen", "Slot_SelectPic"},
        // The working class connects these two itself.
        {"ButLoad", ""},
        {"ButSave", ""},
    });

    // Exit closes the window without asking any slot.
    CreateShipRecorder window;
    window.show();
    QVERIFY(window.isVisible());
    window.fileExit->trigger();
    QVERIFY(!window.isVisible());
    QVERIFY(window.calls.isEmpty());
}

void FormsTest::dialogSlotConnections()
{
    checkConnections<ConfigDialogRecorder>({{"ButDir", "Slot_OpenDir"},
                                            {"ButDirMod", "Slot_OpenModDir"},
                                            {"ButDirModel", "Slot_OpenModelDir"},
                                            {"ButDirType", "Slot_OpenTypesDir"},
                                            {"ButDirSave", "Slot_OpenSaveDir"},
                                            {"ButDirText", "Slot_OpenTextDir"},
                                            {"ButDirScript", "Slot_OpenScriptDir"},
                                            {"ButDirX2bc", "Slot_OpenX2bcDir"}});
    checkConnections<ConfigShipRecorder>({{"ButDir", "Slot_GetDirectory"},
                                          {"ButNewCockpit", "Slot_NewCockpit"},
                                          {"ButUpdate", "Slot_UpdateGuns"},
                                          {"ButAddGun", "Slot_AddGun"},
                                          {"ButRemoveGun", "Slot_RemoveGun"},
                                          {"ButTurretAdd", "Slot_AddTurret"},
                                          {"ButTurretRemove", "Slot_RemoveTurret"},
                                          {"ButCopy", "Slot_CopyCockpit"}});
    checkConnections<CreateProfileRecorder>({{"ButSave", "Slot_Done"}, {"ButImport", "Slot_Import"}});
    checkConnections<ShipBalanceRecorder>(
        {{"ButBalance", "Slot_Balance"}, {"ButAverage", "Slot_SetAverage"}, {"ButDetail", "Slot_Details"}});
    checkConnections<SelectShipRecorder>({{"ButOpen", "Slot_OpenFile"}, {"ButSelect", "Slot_Selected"}});
    checkConnections<ManageProfileRecorder>({{"ButCreateNew", "Slot_Create"}});

    // Double clicks hand on the row.
    SelectShipRecorder select;
    auto* ship = new QTreeWidgetItem(select.ListShips, QStringList{"SS_SH_NEW"});
    emit select.ListShips->itemDoubleClicked(ship, 0);
    QCOMPARE(select.calls, QStringList{"Slot_Selected"});

    ManageProfileRecorder manage;
    auto* profile =
        new QTreeWidgetItem(manage.ListProfile, QStringList{"Fighters", "M3", "any", "fighters.xbp"});
    emit manage.ListProfile->itemDoubleClicked(profile, 1);
    QCOMPARE(manage.calls, QStringList{"Slot_Edit:fighters.xbp"});
}

void FormsTest::acceptAndRejectButtons_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("result");
    const int accepted = QDialog::Accepted;
    const int rejected = QDialog::Rejected;
    QTest::newRow("ConfigDialog done") << "ConfigDialog"
                                       << "ButDone" << accepted;
    QTest::newRow("ConfigDialog cancel") << "ConfigDialog"
                                         << "ButCancel" << rejected;
    QTest::newRow("ConfigShip done") << "ConfigShip"
                                     << "ButDone" << accepted;
    QTest::newRow("ConfigShip cancel") << "ConfigShip"
                                       << "ButCancel" << rejected;
    QTest::newRow("CreateProfile cancel") << "CreateProfile"
                                          << "ButCancel" << rejected;
    QTest::newRow("ManageProfile close") << "ManageProfile"
                                         << "ButClose" << rejected;
    QTest::newRow("ShipBalance done") << "ShipBalance"
                                      << "ButDone" << accepted;
    QTest::newRow("ShipBalance cancel") << "ShipBalance"
                                        << "ButCancel" << rejected;
    QTest::newRow("SelectShip close") << "SelectShip"
                                      << "ButClose" << rejected;
    QTest::newRow("DSelectVariant done") << "DSelectVariant"
                                         << "ButDone" << accepted;
    QTest::newRow("DSelectVariant cancel") << "DSelectVariant"
                                           << "ButCancel" << rejected;
    QTest::newRow("ImportDummy done") << "ImportDummy"
                                      << "ButDone" << accepted;
    QTest::newRow("ImportDummy cancel") << "ImportDummy"
                                        << "ButCancel" << rejected;
    QTest::newRow("LanguageText ok") << "LanguageText"
                                     << "ButOk" << accepted;
    QTest::newRow("LanguageText cancel") << "LanguageText"
                                         << "ButCancel" << rejected;
}

void FormsTest::acceptAndRejectButtons()
{
    QFETCH(QString, form);
    QFETCH(QString, button);
    QFETCH(int, result);
    const auto widget = makeForm(form);
    auto* dialog = qobject_cast<QDialog*>(widget.get());
    QVERIFY(dialog);
    QSignalSpy finished(dialog, &QDialog::finished);
    dialog->setResult(-1);
    QVERIFY(activate(dialog, button));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(dialog->result(), result);
}

void FormsTest::enablingToggles()
{
    CreateShip window;
    QVERIFY(!window.SpinOrgDesc->isEnabled());
    QVERIFY(window.ListText->isEnabled());
    window.CheckExisting->setChecked(true);
    QVERIFY(window.SpinOrgDesc->isEnabled());
    QVERIFY(!window.ListText->isEnabled());
    window.CheckExisting->setChecked(false);
    QVERIFY(!window.SpinOrgDesc->isEnabled());
    QVERIFY(window.ListText->isEnabled());

    ConfigDialog settings;
    settings.CheckX2bc->setChecked(true);
    settings.CheckX2bc->setChecked(false);
    QVERIFY(!settings.LineDirX2bc->isEnabled());
    QVERIFY(!settings.ButDirX2bc->isEnabled());
    settings.CheckX2bc->setChecked(true);
    QVERIFY(settings.LineDirX2bc->isEnabled());
    QVERIFY(settings.ButDirX2bc->isEnabled());
    settings.CheckText->setChecked(true);
    settings.CheckText->setChecked(false);
    QVERIFY(!settings.CheckTextT->isEnabled());
    settings.CheckText->setChecked(true);
    QVERIFY(settings.CheckTextT->isEnabled());
}

void FormsTest::dialButtonsStepByOneLine()
{
    ConfigShip config;
    const std::tuple<QDial*, QPushButton*, QPushButton*> axes[] = {
        {config.DialYaw, config.ButYawUp, config.ButYawDown},
        {config.DialPitch, config.ButPitchUp, config.ButPitchDown},
        {config.DialRoll, config.ButRollUp, config.ButRollDown}};
    for (const auto& [dial, up, down] : axes) {
        QCOMPARE(dial->minimum(), 0);
        QCOMPARE(dial->maximum(), 600);
        QVERIFY(dial->notchesVisible());
        QCOMPARE(up->text(), QString("+"));
        QCOMPARE(down->text(), QString("-"));
        dial->setValue(300);
        QSignalSpy changed(dial, &QDial::valueChanged);
        up->click();
        QCOMPARE(dial->value(), 301);
        down->click();
        down->click();
        QCOMPARE(dial->value(), 299);
        QCOMPARE(changed.size(), 3);
        // Stepping stops at the ends of the range.
        dial->setValue(600);
        up->click();
        QCOMPARE(dial->value(), 600);
    }
}

QTEST_MAIN(FormsTest)
#include "tst_forms.moc"
