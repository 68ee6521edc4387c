// The interface language: switching reloads every text of the window, and a
// missing language or file shows the placeholders.
#include "WindowFixture.h"
#include "app/WindowTexts.h"

#include <QtTest>

class TestInterfaceTexts : public QObject
{
    Q_OBJECT
private slots:
    void changingLanguageReloadsEverything();
    void missingLanguageFileShowsPlaceholders();
};

void TestInterfaceTexts::changingLanguageReloadsEverything()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QVERIFY2(window.languages().size() >= 2, "the shipped file offers a second language");
    const QString english = window.uiText()[Txt::ActionNew];
    QVERIFY(!english.startsWith("ReadText-"));
    QVERIFY2(!window.fileNew->iconText().contains('&') && !window.fileNew->iconText().endsWith('.'),
             "the tool bar shows the plain text");

    AppSettings settings = window.settings();
    settings.Language = window.languages()[1].Name;
    window.setSettings(settings);
    window.LoadUiTexts(true);
    QCOMPARE(window.languages().size(), 2); // listed again, not appended twice
    QVERIFY(window.uiText()[Txt::ActionNew] != english);
    QCOMPARE(window.fileNew->text(), window.uiText()[Txt::ActionNew]);
    QCOMPARE(window.TabData->tabText(0), window.uiText()[Txt::TabMain]);

    // A language the file lacks: every entry goes back to its placeholder.
    settings.Language = "Klingon";
    window.setSettings(settings);
    window.LoadUiTexts(true);
    QCOMPARE(window.uiText()[Txt::ActionNew], QString("ReadText-2"));
    QCOMPARE(window.uiTextExtra()[49], QString("ReadText-49"));
    QCOMPARE(window.fileNew->text(), QString("ReadText-2"));
}

void TestInterfaceTexts::missingLanguageFileShowsPlaceholders()
{
    WindowFixture fixture;
    QFile::remove(fixture.home.filePath("hw_languages.xml"));
    DCreateShip& window = fixture.make();
    QCOMPARE(window.uiText().size(), UiTextCount);
    QCOMPARE(window.uiTextExtra().size(), UiTextExtraCount);
    QCOMPARE(window.windowTitle(), QString("X3 - Hullwright V2.00 [ReadText-30]"));
    QCOMPARE(window.ButSave->text(), QString("ReadText-27"));
    QVERIFY(window.languages().isEmpty());
}

QTEST_MAIN(TestInterfaceTexts)
#include "tst_interfacetexts.moc"
