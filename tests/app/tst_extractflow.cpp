// Extraction as the window runs it from the command line, and the box that
// ends it, answered by the scripted prompter.
#include "WindowFixture.h"
#include "app/ExtractionFlow.h"
#include "app/WindowTexts.h"
#include "core/Services.h"

#include <QtTest>

namespace {

// A plain package stream, which the reader takes as it stands.
QString WritePackage(const TempHome& home, const QByteArray& files)
{
    const QString path = home.filePath("ships/flow.xsp");
    WriteFile(path, "Packager: 1\nName: Flow Ship\nAuthor: Ann\nData: 1;2;SS_SH_FLOW\n" + files);
    return path;
}

} // namespace

class TestExtractFlow : public QObject
{
    Q_OBJECT
private slots:
    void commandLineExtractsAndShowsTheResult();
    void menuExtractionLeavesTheDocument();
    void failuresSayWhy();
};

void TestExtractFlow::commandLineExtractsAndShowsTheResult()
{
    WindowFixture fixture("Prefix\n");
    DCreateShip& window = fixture.make();
    const QString package = WritePackage(fixture.home, "Model: 0 5 objects/flow.pbd\nmodel\n");
    const QString dir = fixture.home.filePath("ships");

    QVERIFY(!window.ParseCommandLine({"-x " + package, "-d HERE"}));
    const auto boxes = fixture.prompts->messages("warning");
    QCOMPARE(boxes.size(), 1);
    QCOMPARE(boxes[0].caption, window.uiText()[Txt::Extracted]);
    QCOMPARE(boxes[0].text, FormatMessage(window.uiText()[Txt::ExtractedText], package, dir));
    QCOMPARE(ReadFile(dir + "/objects/flow.pbd"), QByteArray("model"));
    QVERIFY(QFile::exists(dir + "/types/TShips_FlowShip.txt")); // the Prefix setting names the table
}

void TestExtractFlow::menuExtractionLeavesTheDocument()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    window.TextRaw->setPlainText("1;2;SS_SH_MINE");
    const bool modified = window.IsModified();
    const QString package = WritePackage(fixture.home, "Model: 0 5 objects/flow.pbd\nmodel\n");
    const QString target = fixture.home.filePath("out");
    QVERIFY(QDir().mkpath(target));
    fixture.prompts->fileAnswers.enqueue(package);
    fixture.prompts->fileAnswers.enqueue(target);

    window.Slot_ExtractShip(); // the work itself waits for the timer
    QTRY_COMPARE(fixture.prompts->messages("warning").size(), 1);
    QCOMPARE(ReadFile(target + "/objects/flow.pbd"), QByteArray("model"));
    QVERIFY(ReadFile(target + "/types/TShips.txt").contains("SS_SH_FLOW"));
    // The package went into a record of its own: the window's document stays.
    QCOMPARE(window.TextRaw->toPlainText(), QString("1;2;SS_SH_MINE"));
    QCOMPARE(window.IsModified(), modified);
}

void TestExtractFlow::failuresSayWhy()
{
    // The one box of an extraction of `files` into `dir`.
    auto boxOf = [](const QByteArray& files, const QString& dir, QString* package) {
        WindowFixture fixture;
        DCreateShip& window = fixture.make();
        *package = WritePackage(fixture.home, files);
        window.ParseCommandLine(
            {"-x " + *package, "-d " + (dir.isEmpty() ? fixture.home.filePath("ships") : dir)});
        const auto boxes = fixture.prompts->messages("warning");
        const bool wroteNothing = !QFile::exists(fixture.home.filePath("ships/objects"));
        return boxes.size() == 1 && wroteNothing ? boxes[0] : ScriptedPrompter::Shown{};
    };
    WindowFixture texts;
    const QStringList& t = texts.make().uiText();
    const QStringList& extra = texts.window->uiTextExtra();
    QString package;

    ScriptedPrompter::Shown box = boxOf("Model: 0 99 objects/a.pbd\nshort\n", {}, &package);
    QCOMPARE(box.caption, t[63]);
    QCOMPARE(box.text, t[64] + " " + package);

    box = boxOf("Model: 0 1 objects/a.pbd\nx\nFiles: 0 1 ../a\nx\n", {}, &package);
    QCOMPARE(box.caption, t[63]);
    QCOMPARE(box.text, FormatMessage(extra[TxtExtra::UnsafeNameText], package, "../a"));

    if (!QFileInfo(QStringLiteral("/proc/self")).isDir())
        QSKIP("no /proc here");
    box = boxOf({}, "/proc/self", &package); // a directory that takes no new entry, even from root
    QCOMPARE(box.caption, extra[TxtExtra::ExtractWriteFailed]);
    QCOMPARE(box.text, FormatMessage(extra[TxtExtra::ExtractWriteFailedText], package, "/proc/self"));
}

QTEST_MAIN(TestExtractFlow)
#include "tst_extractflow.moc"
