#include "WindowFixture.h"

#include <QtTest>

namespace {

// Records the edit target each time edit mode is started.
class RecordingWindow : public DCreateShip
{
public:
    using DCreateShip::DCreateShip;
    void StartEditMode() override { editTargets.append(editTarget()); }
    QStringList editTargets;
};

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT
private slots:
    void splitJoinsTokensOfOneOption_data();
    void splitJoinsTokensOfOneOption();
    void splitReadsTheRawVectorFromItsSecondToken();
    void noEntriesShowsTheWindow();
    void extractWithoutDirectoryAsksAndEnds();
    void extractHereNeedsNoQuestion();
    void extractToMissingDirectoryWarns();
    void optionWordsIgnoreCase();
    void bareTokenBehindOptionJoinsIt();
    void openFileKeepsTheWindow();
    void editModeStartsWhenReached();
    void unknownOptionsAreIgnored();
};

void TestCommandLine::splitJoinsTokensOfOneOption_data()
{
    QTest::addColumn<QStringList>("tokens");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("nothing") << QStringList{} << QStringList{};
    QTest::newRow("quoted path with blank")
        << QStringList{"-x", "\"my", "ship.xsp\"", "-d", "HERE"} << QStringList{"-x my ship.xsp", "-d HERE"};
    QTest::newRow("path the shell kept together")
        << QStringList{"-x", "\"C:/my ships/a.xsp\""} << QStringList{"-x C:/my ships/a.xsp"};
    QTest::newRow("bare token joins the option")
        << QStringList{"-d", "HERE", "file.xsp"} << QStringList{"-d HERE file.xsp"};
    QTest::newRow("two bare tokens") << QStringList{"a.xsp", "b.xsp"} << QStringList{"a.xsp b.xsp"};
    QTest::newRow("quoted option word") << QStringList{"\"-x\"", "a.xsp"} << QStringList{"-x a.xsp"};
    QTest::newRow("each dash starts an entry")
        << QStringList{"-x", "-d", "-e"} << QStringList{"-x", "-d", "-e"};
    QTest::newRow("bare first, then option")
        << QStringList{"a.xsp", "-x", "b.xsp"} << QStringList{"a.xsp", "-x b.xsp"};
}

void TestCommandLine::splitJoinsTokensOfOneOption()
{
    QFETCH(QStringList, tokens);
    QFETCH(QStringList, entries);
    QCOMPARE(SplitArguments(tokens), entries);
}

void TestCommandLine::splitReadsTheRawVectorFromItsSecondToken()
{
    QByteArray program("hullwright"), option("-X"), path("a b.xsp");
    char* argv[] = {program.data(), option.data(), path.data()};
    QCOMPARE(SplitArguments(3, argv), QStringList{"-X a b.xsp"});
}

void TestCommandLine::noEntriesShowsTheWindow()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QVERIFY(window.ParseCommandLine({}));
    QVERIFY(fixture.prompts->shown.isEmpty());
}

void TestCommandLine::extractWithoutDirectoryAsksAndEnds()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QString package = fixture.home.filePath("ships/a.xsp");
    QVERIFY(!window.ParseCommandLine({"-x " + package}));
    QCOMPARE(fixture.prompts->shown.size(), 1);
    const auto& asked = fixture.prompts->shown.first();
    QCOMPARE(asked.kind, QString("directory"));
    QCOMPARE(asked.caption, window.uiText()[194]);
    QCOMPARE(asked.text, fixture.home.filePath("ships")); // starts beside the package
    QVERIFY(window.extraction().Source().isEmpty());      // cancelled: nothing extracted
}

void TestCommandLine::extractHereNeedsNoQuestion()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QString package = fixture.home.filePath("game/a.xsp");
    QVERIFY(!window.ParseCommandLine({"-x " + package, "-d HERE"}));
    // No directory is asked for; the one box says that there is no package.
    QCOMPARE(fixture.prompts->shown.size(), 1);
    QCOMPARE(fixture.prompts->shown.first().caption, window.uiText()[63]);
    QCOMPARE(window.extraction().Source(), package);
    QCOMPARE(window.extraction().Target(), fixture.home.filePath("game"));
}

void TestCommandLine::extractToMissingDirectoryWarns()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QString missing = fixture.home.filePath("nowhere");
    QVERIFY(!window.ParseCommandLine({"-x a.xsp", "-d " + missing}));
    const auto warnings = fixture.prompts->messages("warning");
    QCOMPARE(warnings.size(), 1);
    QCOMPARE(warnings[0].caption, window.uiText()[199]);
    QCOMPARE(warnings[0].text, window.uiText()[199] + ":\n" + missing);
    QCOMPARE(warnings[0].buttons, QStringList{window.uiText()[60]});
}

void TestCommandLine::optionWordsIgnoreCase()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QString dir = fixture.home.filePath("game");
    QVERIFY(!window.ParseCommandLine({"-EXTRACT a.xsp", "-Dir " + dir}));
    QCOMPARE(window.extraction().Source(), QString("a.xsp"));
    QCOMPARE(window.extraction().Target(), dir);
}

void TestCommandLine::bareTokenBehindOptionJoinsIt()
{
    // "-d HERE file.xsp" makes a directory value of three words and no file to open.
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QVERIFY(window.ParseCommandLine(SplitArguments(QStringList{"-d", "HERE", "file.xsp"})));
    QVERIFY(fixture.prompts->shown.isEmpty());
    QVERIFY(window.extraction().Source().isEmpty());
}

void TestCommandLine::openFileKeepsTheWindow()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QString dir = fixture.home.filePath("game");
    QVERIFY(window.ParseCommandLine({"first.xsp", "-x a.xsp", "-d " + dir}));
    QCOMPARE(window.extraction().Source(), QString("a.xsp"));
}

void TestCommandLine::editModeStartsWhenReached()
{
    WindowFixture fixture;
    auto scripted = std::make_unique<ScriptedPrompter>();
    RecordingWindow window(std::move(scripted));
    QVERIFY(window.ParseCommandLine({"-e first target", "-x a.xsp", "-editmode second"}));
    QCOMPARE(window.editTargets, (QStringList{"first target", "second"}));
    QCOMPARE(window.editTarget(), QString("second"));
}

void TestCommandLine::unknownOptionsAreIgnored()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QVERIFY(window.ParseCommandLine({"-verbose yes", "-q"}));
    QVERIFY(fixture.prompts->shown.isEmpty());
    QVERIFY(window.editTarget().isEmpty());
}

QTEST_MAIN(TestCommandLine)
#include "tst_commandline.moc"
