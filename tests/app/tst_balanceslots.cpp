// Balance Ship and Manage Balance Profiles from the main window, with the
// shipped profiles: the raw ship line goes through the balance dialog and
// comes back rewritten (or stays on Cancel), an empty line is refused, and the
// manager's editor offers the window's classes.
#include "WindowFixture.h"
#include "app/BalanceController.h"
#include "balance/BalanceModel.h"
#include "balance/DCreateProfile.h"
#include "balance/DManageProfile.h"
#include "balance/DShipBalance.h"
#include "gamedata/TypesFile.h"

#include <QtTest>

class TestBalanceSlots : public QObject
{
    Q_OBJECT
private slots:
    void balanceRewritesTheRawLine();
    void managerOffersTheWindowsClasses();
};

void TestBalanceSlots::balanceRewritesTheRawLine()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QStringList ships =
        ReadTypesFile(qEnvironmentVariable("HW_SOURCE_DIR") + "/samples/game-src/types/TShips.txt").records;
    const QString lance = ships.value(0);
    window.TextRaw->setPlainText(lance);

    int accept = QDialog::Accepted;
    window.balance().SetDialogRunner([&accept](QDialog& dialog) {
        auto* balance = qobject_cast<DShipBalance*>(&dialog);
        if (!balance)
            return int(QDialog::Rejected);
        balance->ButAverage->click();
        return accept;
    });
    accept = QDialog::Rejected;
    window.toolsBalance->trigger();
    QCOMPARE(window.TextRaw->toPlainText(), lance);

    accept = QDialog::Accepted;
    window.ButBalance->click();
    BalanceModel expected(*LoadProfile(fixture.home.filePath("Profiles/m3_fighter.xbp")));
    expected.SetAverage();
    QCOMPARE(window.TextRaw->toPlainText(), expected.ApplyToShipLine(lance));
    QVERIFY(fixture.prompts->messages("warning").isEmpty());

    window.TextRaw->clear();
    window.ButBalance->click();
    QCOMPARE(fixture.prompts->messages("warning").size(), 1);
    QCOMPARE(fixture.prompts->messages("warning")[0].caption, window.uiText()[210]);
}

void TestBalanceSlots::managerOffersTheWindowsClasses()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    int listed = 0;
    QStringList classes;
    window.balance().SetDialogRunner([&](QDialog& dialog) {
        if (auto* manager = qobject_cast<DManageProfile*>(&dialog)) {
            listed = manager->ListProfile->topLevelItemCount();
            manager->ButCreateNew->click();
        } else if (auto* editor = qobject_cast<DCreateProfile*>(&dialog)) {
            for (int i = 0; i < editor->ComboClass->count(); ++i)
                classes.append(editor->ComboClass->itemText(i));
        }
        return int(QDialog::Rejected);
    });
    window.settingManage->trigger();
    QCOMPARE(listed, QDir(fixture.home.filePath("Profiles")).entryList({"*.xbp"}).size());
    QVERIFY(listed > 0);
    QCOMPARE(classes.size(), window.gameTexts().Classes().size());
    QCOMPARE(classes.value(2),
             window.gameTexts().Classes().value(2).Name); // no game text: the list's own name
}

QTEST_MAIN(TestBalanceSlots)
#include "tst_balanceslots.moc"
