#include "WindowFixture.h"

#include <QMenuBar>
#include <QtTest>

class TestInterfaceTexts : public QObject
{
    Q_OBJECT
private slots:
    void textsReachTheirWidgets();
    void changingLanguageReloadsEverything();
    void missingLanguageFileShowsPlaceholders();
};

void TestInterfaceTexts::textsReachTheirWidgets()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QStringList& t = window.UiText;
    QCOMPARE(window.menuBar()->actions().value(0)->text(), t[0]);
    QCOMPARE(window.menuBar()->actions().value(2)->text(), t[191]);
    QCOMPARE(window.fileNew->text(), t[2]);
    QCOMPARE(window.fileNew->toolTip(), t[3]);
    QVERIFY2(!window.fileNew->iconText().contains('&'), qPrintable(window.fileNew->iconText()));
    QVERIFY(!window.fileNew->iconText().endsWith('.'));
    QCOMPARE(window.toolsConfig->toolTip(), t[314]);
    QCOMPARE(window.TabData->tabText(window.TabData->indexOf(window.TabOther)), t[229]);
    QCOMPARE(window.TabData->tabText(window.TabData->indexOf(window.TabRaw)), t[124]);
    QCOMPARE(window.ButBalance->text(), t[301]);
    QCOMPARE(window.CheckXenon->text(), t[261]);
    QCOMPARE(window.GroupShipyard->title(), t[35]);
    QCOMPARE(window.LabelShipID->text(), "<b>" + t[31] + ":</b>");
    QCOMPARE(window.LabelScripts->text(), t[180]);
    QCOMPARE(window.ListComp->headerItem()->text(1), t[122]);
    QCOMPARE(window.ListCockpit->headerItem()->text(2), t[105]);
    QVERIFY(window.menuBar()->isVisibleTo(&window));
    for (int index : {0, 2, 20, 31, 124, 229, 301, 314})
        QVERIFY2(!t[index].startsWith("ReadText-"), qPrintable(t[index]));
}

void TestInterfaceTexts::changingLanguageReloadsEverything()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QVERIFY2(window.Languages.size() >= 2, "the shipped file offers a second language");
    const QString english = window.UiText[2];
    const LanguageEntry other = window.Languages[1];

    window.Language = other.Name;
    window.LoadUiTexts(true);
    QCOMPARE(window.Languages.size(), 2); // listed again, not appended twice
    QVERIFY(window.UiText[2] != english);
    QCOMPARE(window.fileNew->text(), window.UiText[2]);
    QCOMPARE(window.TabData->tabText(0), window.UiText[20]);

    // A language the file lacks: every entry goes back to its placeholder.
    window.Language = "Klingon";
    window.LoadUiTexts(true);
    QCOMPARE(window.UiText[2], QString("ReadText-2"));
    QCOMPARE(window.UiTextExtra[49], QString("ReadText-49"));
    QCOMPARE(window.fileNew->text(), QString("ReadText-2"));
}

void TestInterfaceTexts::missingLanguageFileShowsPlaceholders()
{
    WindowFixture fixture;
    QFile::remove(fixture.home.filePath("hw_languages.xml"));
    DCreateShip& window = fixture.make();
    QCOMPARE(window.UiText.size(), UiTextCount);
    QCOMPARE(window.UiTextExtra.size(), UiTextExtraCount);
    QCOMPARE(window.windowTitle(), QString("X3 - Hullwright V2.00 [ReadText-30]"));
    QCOMPARE(window.ButSave->text(), QString("ReadText-27"));
    QVERIFY(window.Languages.isEmpty());
}

QTEST_MAIN(TestInterfaceTexts)
#include "tst_interfacetexts.moc"
