// Tests of the forms: the wiring from buttons and actions to the slots that
// working classes override, the buttons that close dialogs, the toggles and
// steppers wired in code, sorting, captions restored by languageChange, and
// the pictures the forms and the code refer to.

#include "forms/ConfigDialog.h"
#include "forms/ConfigShip.h"
#include "forms/CreateProfile.h"
#include "forms/CreateShip.h"
#include "forms/DBalanceValues.h"
#include "forms/SelectVariant.h"
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
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

namespace {

using FormFactory = std::function<std::unique_ptr<QWidget>()>;

template <typename Form> std::pair<const char*, FormFactory> form(const char* name)
{
    return {name, [] { return std::make_unique<Form>(); }};
}

const std::vector<std::pair<const char*, FormFactory>>& allForms()
{
    static const std::vector<std::pair<const char*, FormFactory>> forms = {
        form<CreateShip>("CreateShip"),
        form<ConfigDialog>("ConfigDialog"),
        form<ConfigShip>("ConfigShip"),
        form<CreateProfile>("CreateProfile"),
        form<ManageProfile>("ManageProfile"),
        form<ShipBalance>("ShipBalance"),
        form<DBalanceValues>("DBalanceValues"),
        form<SelectShip>("SelectShip"),
        form<SelectVariant>("SelectVariant"),
        form<ImportDummy>("ImportDummy"),
        form<LanguageText>("LanguageText"),
        form<WizardShip>("WizardShip"),
        form<WizardDummy>("WizardDummy"),
        form<WizardComp>("WizardComp"),
        form<WizardSelectListV>("WizardSelectListV"),
        form<WizardSelectListH>("WizardSelectListH"),
        form<WizardText>("WizardText"),
    };
    return forms;
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

// Each sender must reach exactly its slot, once; a sender with an empty slot reaches none.
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
    void createShipConnections();
    void dialogSlotConnections();
    void closingButtonsAcceptOrReject();
    void enablingToggles();
    void dialButtonsStepByOne();
    void listViewsSortAscendingByFirstColumn();
    void languageChangeRestoresCaptions();
    void constructorArguments();
    void picturesLoad();
};

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

void FormsTest::closingButtonsAcceptOrReject()
{
    // Wherever a dialog has one of these buttons, it closes the dialog so.
    const std::pair<const char*, int> buttons[] = {{"ButDone", QDialog::Accepted},
                                                   {"ButOk", QDialog::Accepted},
                                                   {"ButCancel", QDialog::Rejected},
                                                   {"ButClose", QDialog::Rejected}};
    int checked = 0;
    for (const auto& [name, make] : allForms()) {
        for (const auto& [button, result] : buttons) {
            const auto widget = make();
            auto* dialog = qobject_cast<QDialog*>(widget.get());
            if (!dialog || !dialog->findChild<QAbstractButton*>(button))
                continue;
            QSignalSpy finished(dialog, &QDialog::finished);
            dialog->setResult(-1);
            activate(dialog, button);
            const QString where = QString("%1::%2").arg(name, button);
            QVERIFY2(finished.size() == 1, qPrintable(where));
            QVERIFY2(dialog->result() == result, qPrintable(where));
            ++checked;
        }
    }
    QVERIFY(checked > 0);
}

void FormsTest::enablingToggles()
{
    CreateShip window;
    for (bool existing : {true, false}) {
        window.CheckExisting->setChecked(existing);
        QCOMPARE(window.SpinOrgDesc->isEnabled(), existing);
        QCOMPARE(window.ListText->isEnabled(), !existing);
    }

    ConfigDialog settings;
    for (bool on : {true, false, true}) {
        settings.CheckX2bc->setChecked(on);
        settings.CheckText->setChecked(on);
        QCOMPARE(settings.LineDirX2bc->isEnabled(), on);
        QCOMPARE(settings.ButDirX2bc->isEnabled(), on);
        QCOMPARE(settings.CheckTextT->isEnabled(), on);
    }
}

void FormsTest::dialButtonsStepByOne()
{
    ConfigShip config;
    const std::tuple<QDial*, QPushButton*, QPushButton*> axes[] = {
        {config.DialYaw, config.ButYawUp, config.ButYawDown},
        {config.DialPitch, config.ButPitchUp, config.ButPitchDown},
        {config.DialRoll, config.ButRollUp, config.ButRollDown}};
    for (const auto& [dial, up, down] : axes) {
        const int middle = (dial->minimum() + dial->maximum()) / 2;
        dial->setValue(middle);
        QSignalSpy changed(dial, &QDial::valueChanged);
        up->click();
        QCOMPARE(dial->value(), middle + 1);
        down->click();
        down->click();
        QCOMPARE(dial->value(), middle - 1);
        QCOMPARE(changed.size(), 3);
        // Stepping stops at the ends of the range.
        dial->setValue(dial->maximum());
        up->click();
        QCOMPARE(dial->value(), dial->maximum());
    }
}

void FormsTest::listViewsSortAscendingByFirstColumn()
{
    // A package takes list rows in their shown order, so every list shows them sorted.
    for (const auto& [name, make] : allForms()) {
        const auto form = make();
        for (QTreeWidget* list : form->findChildren<QTreeWidget*>()) {
            const QString where = QString(name) + "::" + list->objectName();
            QVERIFY2(list->isSortingEnabled(), qPrintable(where));
            QVERIFY2(list->header()->sortIndicatorSection() == 0, qPrintable(where));
            QVERIFY2(list->header()->sortIndicatorOrder() == Qt::AscendingOrder, qPrintable(where));
        }
    }
}

void FormsTest::languageChangeRestoresCaptions()
{
    for (const auto& [name, make] : allForms()) {
        const auto widget = make();
        const QString caption = widget->windowTitle();
        widget->setWindowTitle("changed");
        QAbstractButton* button = widget->findChild<QPushButton*>();
        const QString buttonText = button ? button->text() : QString();
        if (button)
            button->setText("changed");

        QVERIFY2(QMetaObject::invokeMethod(widget.get(), "languageChange"), name);
        QVERIFY2(widget->windowTitle() == caption, name);
        QVERIFY2(!button || button->text() == buttonText, name);
    }
}

void FormsTest::constructorArguments()
{
    ConfigDialog named(nullptr, "settings", true);
    QCOMPARE(named.objectName(), QString("settings"));
    QVERIFY(named.isModal());
    ConfigDialog plain(nullptr, "");
    QCOMPARE(plain.objectName(), QString("ConfigDialog")); // the Designer name stays
    QVERIFY(!plain.isModal());

    QWidget parent;
    WizardText page(&parent, "texts page");
    QCOMPARE(page.objectName(), QString("texts page"));
    QCOMPARE(page.parentWidget(), &parent);
}

void FormsTest::picturesLoad()
{
    // Every picture compiled into the forms loads, and the forms find theirs.
    QDirIterator it(":/forms/images", {"*.png"});
    while (it.hasNext()) {
        const QString path = it.next();
        QVERIFY2(!QImage(path).isNull(), qPrintable(path));
    }
    CreateShip window;
    QVERIFY(!window.windowIcon().pixmap(32).isNull());
    for (const QAction* action : window.findChildren<QAction*>())
        if (!action->isSeparator() && !action->menu() && !action->objectName().isEmpty())
            QVERIFY2(!action->icon().pixmap(32).isNull(), qPrintable(action->objectName()));
    for (QCheckBox* race : window.GroupShipyard->findChildren<QCheckBox*>())
        QVERIFY2(!race->icon().pixmap(race->iconSize()).isNull(), qPrintable(race->objectName()));
    for (const auto& [name, make] : allForms())
        if (const auto widget = make(); qobject_cast<QDialog*>(widget.get()))
            QVERIFY2(!widget->windowIcon().pixmap(16).isNull(), name);

    // Every run-time icon the code names is shipped and loads.
    const QString source = qEnvironmentVariable("HW_SOURCE_DIR");
    const QString data = qEnvironmentVariable("HW_DATA_DIR");
    if (source.isEmpty() || data.isEmpty())
        QSKIP("HW_SOURCE_DIR or HW_DATA_DIR is not set");
    static const QRegularExpression named("\"(/Icons/[^\"]+\\.png)\"");
    QSet<QString> icons;
    for (QDirIterator code(source + "/src", {"*.cpp", "*.h"}, QDir::Files, QDirIterator::Subdirectories);
         code.hasNext();) {
        QFile file(code.next());
        QVERIFY(file.open(QIODevice::ReadOnly));
        for (const QRegularExpressionMatch& match : named.globalMatch(QString::fromUtf8(file.readAll())))
            icons.insert(match.captured(1));
    }
    QVERIFY(!icons.isEmpty());
    for (const QString& icon : icons)
        QVERIFY2(!QImage(data + icon).isNull(), qPrintable(icon));
}

QTEST_MAIN(FormsTest)
#include "tst_forms.moc"
