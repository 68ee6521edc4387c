// The balance flows through the prompt seam and the dialog runner: Balance
// Ship's warnings and choice of profile, the sliders with Auto Balance on, the
// profile manager's create and edit, and the editor's import of limits from a
// table, a packed table and a catalog, with the variant list.
#include "BalanceTestLines.h"
#include "TestSupport.h"
#include "balance/BalanceFlows.h"
#include "balance/DCreateProfile.h"
#include "balance/DManageProfile.h"
#include "balance/DSelectVariant.h"
#include "balance/DShipBalance.h"
#include "balance/ProfileImport.h"
#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"

#include <QDir>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTreeWidgetItem>
#include <QtTest>

namespace {

QStringList Texts()
{
    QStringList texts;
    for (int i = 0; i < 420; ++i)
        texts.append(QStringLiteral("T%1").arg(i));
    return texts;
}

// Works each dialog a flow runs by its kind, and records which ran.
struct Runner
{
    std::function<int(DShipBalance&)> balance;
    std::function<int(DManageProfile&)> manage;
    std::function<int(DCreateProfile&)> edit;
    std::function<int(DSelectVariant&)> variants;
    QStringList ran;

    DialogRunner Function()
    {
        return [this](QDialog& dialog) {
            ran.append(QString::fromLatin1(dialog.metaObject()->className()));
            if (auto* d = qobject_cast<DShipBalance*>(&dialog))
                return balance(*d);
            if (auto* d = qobject_cast<DManageProfile*>(&dialog))
                return manage(*d);
            if (auto* d = qobject_cast<DCreateProfile*>(&dialog))
                return edit(*d);
            if (auto* d = qobject_cast<DSelectVariant*>(&dialog))
                return variants(*d);
            return int(QDialog::Rejected);
        };
    }
};

struct Fixture
{
    QTemporaryDir dir;
    ScriptedPrompter prompts;
    Runner runner;
    BalanceContext context{nullptr, prompts, Texts(), dir.filePath("Profiles"), dir.filePath("temp")};

    Fixture() { context.runDialog = runner.Function(); }

    QStringList Captions() const
    {
        QStringList captions;
        for (const ScriptedPrompter::Shown& shown : prompts.messages("warning"))
            captions.append(shown.caption);
        return captions;
    }
};

BalanceProfile Named(const QString& name, const QString& file, int shipClass = 2)
{
    BalanceProfile p = UniformProfile(1000, 3000, 4);
    p.Profile = name;
    p.FileName = file;
    p.Class = shipClass;
    return p;
}

// A ship of class 2 at the middle of every range of Named()'s profiles.
QString MiddleShip()
{
    QList<QPair<int, QString>> values = {
        {ShipLineField::ShipClass, "2"},    {ShipLineField::Variation, "0"},
        {ShipLineField::RechargeRate, "1"}, {ShipLineField::Pitch, "0.333333334"},
        {ShipLineField::ShieldType, "0"},   {ShipLineField::ShieldCount, "4"}};
    for (const int field : {ShipLineField::Speed, ShipLineField::Acceleration, ShipLineField::ReactorOutput,
                            ShipLineField::WeaponEnergy, ShipLineField::CargoMax, ShipLineField::Hull})
        values.append({field, "2000"});
    return ShipLineWith(values);
}

// A table of three ships of class 3: plain, variant 2 and variant 5.
QByteArray ShipTable()
{
    const auto ship = [](int variation, int speed) {
        QStringList f(65, "0");
        f[ShipLineField::ShipClass] = "3";
        f[ShipLineField::Variation] = QString::number(variation);
        f[ShipLineField::ShipScene] = "ships\\x";
        f[ShipLineField::Speed] = QString::number(speed);
        f[ShipLineField::CargoMin] = "10";
        f[ShipLineField::CargoMax] = "20";
        f[ShipLineField::RechargeRate] = "0.1";
        f[ShipLineField::WeaponEnergy] = "100";
        return f.join(u';') + ";\n";
    };
    return ("// ships\n48;3;\n" + ship(0, 5000) + ship(2, 7000) + ship(5, 9000)).toUtf8();
}

} // namespace

class TestBalanceDialogs : public QObject
{
    Q_OBJECT
private slots:
    void balanceShipWarnsOrAsks();
    void sliderMovesBalanceTheOthers();
    void managerCreatesAndEdits();
    void importFromTables();
};

void TestBalanceDialogs::balanceShipWarnsOrAsks()
{
    Fixture f;
    f.runner.balance = [](DShipBalance&) { return int(QDialog::Accepted); };
    QCOMPARE(BalanceShip(f.context, "  "), std::nullopt);
    QCOMPARE(BalanceShip(f.context, MiddleShip()), std::nullopt); // no profile at all
    QCOMPARE(f.Captions(), (QStringList{"T210", "T307"}));
    QVERIFY(f.runner.ran.isEmpty());

    QVERIFY(SaveProfile(Named("First", "a"), f.context.profilesDir));
    QVERIFY(SaveProfile(Named("Second", "b"), f.context.profilesDir));
    QVERIFY(SaveProfile(Named("Other class", "c", 4), f.context.profilesDir));
    f.prompts.inputAnswers.enqueue(std::nullopt); // cancelled: no warning
    QCOMPARE(BalanceShip(f.context, MiddleShip()), std::nullopt);
    QCOMPARE(f.Captions().size(), 2);

    QString chosen;
    f.runner.balance = [&chosen](DShipBalance& d) {
        chosen = d.Model().Profile().Profile;
        return int(QDialog::Rejected);
    };
    f.prompts.inputAnswers.enqueue(QStringLiteral("Second"));
    QCOMPARE(BalanceShip(f.context, MiddleShip()), std::nullopt); // rejected: nothing changes
    QCOMPARE(chosen, QStringLiteral("Second"));
}

void TestBalanceDialogs::sliderMovesBalanceTheOthers()
{
    DShipBalance dialog(Texts(), Named("Only", "only"));
    dialog.LoadFromShipLine(MiddleShip());
    QCOMPARE(dialog.LineAverage->text(), QStringLiteral("100"));
    dialog.CheckAuto->setChecked(true);
    // The first move sees the average from before it, which was 100.
    dialog.SliderSpeed->setValue(dialog.SliderSpeed->maximum());
    QVERIFY(dialog.LineAverage->text().toInt() > 100);
    dialog.SliderAccel->setValue(dialog.SliderAccel->maximum());
    QCOMPARE(dialog.LineAverage->text(), QStringLiteral("100"));
    QCOMPARE(dialog.SliderAccel->value(), dialog.SliderAccel->maximum()); // the user's slider stays
    QVERIFY(dialog.SliderHull->value() < dialog.SliderHull->maximum() / 2);
    for (int index = 0; index < BalanceIndex::Count; ++index)
        QCOMPARE(dialog.SliderOf(index)->value(), dialog.Model().Position(index));
}

void TestBalanceDialogs::managerCreatesAndEdits()
{
    Fixture f;
    // A hand-made file with missing keys and text for numbers is listed all the same.
    QVERIFY(WriteFile(f.context.profilesDir + "/rough.xbp", "profile: Rough\nCLASS: 9\nSpeed: fast;10\n"));
    const QStringList classes = {"C0", "C1", "C2", "C3", "C4"};
    const QStringList variants = {"Vanguard", "Raider"};

    f.runner.edit = [&f](DCreateProfile& d) {
        d.ButSave->click(); // no name yet: warned, and the editor stays
        if (d.result() == QDialog::Accepted || f.Captions() != QStringList{"T70"})
            return int(QDialog::Rejected);
        d.LineProfile->setText("Fast Ones");
        d.ComboClass->setCurrentIndex(3);
        d.ComboVariant->setCurrentIndex(3); // variant 2
        d.SpinSpeedMin->setValue(4000);
        d.ComboMaxShield->setCurrentIndex(4);
        d.ButSave->click();
        return d.result();
    };
    QStringList listed;
    f.runner.manage = [&](DManageProfile& d) {
        for (int row = 0; row < d.ListProfile->topLevelItemCount(); ++row)
            listed.append(d.ListProfile->topLevelItem(row)->text(1));
        f.prompts.inputAnswers.enqueue(QStringLiteral("fast"));
        d.ButCreateNew->click();
        f.prompts.inputAnswers.enqueue(std::nullopt); // a second one whose name is cancelled
        f.prompts.shown.clear();
        d.ButCreateNew->click();
        return int(QDialog::Rejected);
    };
    ManageProfiles(f.context, classes, variants);
    QCOMPARE(listed, QStringList{ClassCode(1)}); // class 9 shows the code of 1
    const std::optional<BalanceProfile> made = LoadProfile(f.context.profilesDir + "/fast.xbp");
    QVERIFY(made);
    QCOMPARE(made->Profile, QStringLiteral("Fast Ones"));
    QCOMPARE(made->Class, 3);
    QCOMPARE(made->Variant, 2);
    QCOMPARE(made->SpeedMin, 4000);
    QCOMPARE(made->ShieldMaxType, 4);
    QCOMPARE(QDir(f.context.profilesDir).entryList(QDir::Files).size(), 2);

    // Edit: the row's file name finds the profile; Cancel leaves it, Save writes it.
    DManageProfile manager(f.context, classes, variants);
    QTreeWidgetItem* row = manager.ListProfile->findItems("fast", Qt::MatchExactly, 3).value(0);
    QVERIFY(row);
    f.runner.edit = [](DCreateProfile& d) {
        d.SpinHullMax->setValue(777);
        return int(QDialog::Rejected);
    };
    manager.Slot_Edit(row);
    QCOMPARE(LoadProfile(f.context.profilesDir + "/fast.xbp"), made);
    f.runner.edit = [](DCreateProfile& d) {
        d.SpinHullMax->setValue(777);
        d.ButSave->click();
        return d.result();
    };
    manager.Slot_Edit(manager.ListProfile->findItems("fast", Qt::MatchExactly, 3).value(0));
    QCOMPARE(LoadProfile(f.context.profilesDir + "/fast.xbp")->HullMax, 777);
    QCOMPARE(LoadProfile(f.context.profilesDir + "/fast.xbp")->Variant, 2);
    f.runner.ran.clear();
    manager.Slot_Edit(nullptr);
    QVERIFY(f.runner.ran.isEmpty());
}

void TestBalanceDialogs::importFromTables()
{
    Fixture f;
    const QString txt = f.dir.filePath("tables/TShips.txt");
    QVERIFY(WriteFile(txt, ShipTable()));
    // The same table packed, and in a catalog; and a catalog without it.
    QFile source(txt);
    QVERIFY(QDir(f.dir.path()).mkpath("packed"));
    QVERIFY(GameFileCopyIn(source, f.dir.filePath("packed/TShips.txt"), true));
    CatArchiveHandle* made = CatOpenArchive(QFile::encodeName(f.dir.filePath("01.cat")).constData(), 1);
    QVERIFY(made && CatCloseArchive(made));
    QFile::copy(f.dir.filePath("01.cat"), f.dir.filePath("empty.cat"));
    QFile::copy(f.dir.filePath("01.dat"), f.dir.filePath("empty.dat"));
    QVERIFY(GameFileCopyIn(source, f.dir.filePath("01.cat") + "::types\\TShips.txt", true));

    BalanceProfile profile;
    DCreateProfile editor(f.context, {"C0", "C1", "C2", "C3"}, {"V1", "V2", "V3", "V4", "V5"}, profile);
    editor.ComboClass->setCurrentIndex(3);
    editor.ComboVariant->setCurrentIndex(3); // variant 2 only: no variant list
    for (const QString& chosen : {txt, f.dir.filePath("packed/TShips.pck"), f.dir.filePath("01.cat")}) {
        editor.SpinSpeedMin->setValue(1);
        f.prompts.fileAnswers.enqueue(chosen);
        editor.ButImport->click();
        QVERIFY2(editor.SpinSpeedMin->value() == 7000, qPrintable(chosen));
        QVERIFY(!QFile::exists(f.context.tempDir + "/TShips.txt"));
    }
    QVERIFY(f.runner.ran.isEmpty());
    QVERIFY(f.Captions().isEmpty());

    // Any variant: the variant list asks which count.
    editor.ComboVariant->setCurrentIndex(0);
    const auto importWith = [&](const QList<int>& checked, int result) {
        f.runner.variants = [&checked, result](DSelectVariant& d) {
            for (int row = 0; row < d.ListVariant->topLevelItemCount(); ++row)
                d.ListVariant->topLevelItem(row)->setCheckState(0, checked.contains(row) ? Qt::Checked
                                                                                         : Qt::Unchecked);
            return result;
        };
        editor.SpinSpeedMin->setValue(1);
        editor.SpinSpeedMax->setValue(1);
        f.prompts.fileAnswers.enqueue(txt);
        editor.ButImport->click();
        return std::pair(editor.SpinSpeedMin->value(), editor.SpinSpeedMax->value());
    };
    QCOMPARE(importWith({0}, QDialog::Accepted), std::pair(5000, 5000)); // plain ships only
    QCOMPARE(importWith({0, 2, 5}, QDialog::Accepted), std::pair(5000, 9000));
    QCOMPARE(importWith({}, QDialog::Accepted), std::pair(1, 1)); // none checked: nothing changes
    QCOMPARE(importWith({0, 2}, QDialog::Rejected), std::pair(1, 1));

    editor.ComboVariant->setCurrentIndex(3);
    editor.SpinSpeedMin->setValue(7000);
    f.prompts.fileAnswers.enqueue(f.dir.filePath("empty.cat"));
    editor.ButImport->click();
    editor.ComboClass->setCurrentIndex(2); // no ship of this class
    f.prompts.fileAnswers.enqueue(txt);
    editor.ButImport->click();
    QCOMPARE(f.Captions(), (QStringList{"T58", "T342"}));
    QCOMPARE(editor.SpinSpeedMin->value(), 7000);
    QCOMPARE(profile, BalanceProfile()); // nothing is written before Save
}

QTEST_MAIN(TestBalanceDialogs)
#include "tst_balancedialogs.moc"
