// The content lists of the main window: drops, the add, change and remove
// operations, the context menus, the language dialog and the caption's star.
#include "WindowFixture.h"
#include "app/ScriptListController.h"
#include "app/WindowTexts.h"
#include "forms/LanguageText.h"
#include "forms/WListView.h"

#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QtTest>

namespace {

QStringList Column(const QTreeWidget* list, int column = 0)
{
    QStringList cells;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        cells.append(list->topLevelItem(i)->text(column));
    return cells;
}

// The entries of a menu: texts, and "-" for a separator.
QStringList Entries(const QMenu& menu)
{
    QStringList entries;
    for (const QAction* action : menu.actions())
        entries.append(action->isSeparator() ? QStringLiteral("-") : action->text());
    return entries;
}

QTreeWidgetItem* AddRow(QTreeWidget* list, const QStringList& cells, bool selected = false)
{
    auto* row = new QTreeWidgetItem(list, cells);
    row->setSelected(selected);
    return row;
}

bool HasStar(const DCreateShip& window)
{
    return window.windowTitle().contains("[*");
}

bool WriteFile(const QString& path, qint64 size)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QByteArray(size, 'x')) == size;
}

// A drag that enters the list and is dropped on it; the toolkit delivers a
// drop only to the widget that a drag entered.
void SendDrop(QWidget* viewport, const QMimeData& mime)
{
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &drop);
}

} // namespace

class TestContentLists : public QObject
{
    Q_OBJECT
private slots:
    void dropTextUndoesEscapesAndUrls_data();
    void dropTextUndoesEscapesAndUrls();
    void listTakesTextDragsAndReportsRightClicks();
    void modelDropKeepsModelsAndAsksForTheDirectory();
    void scriptsDropOncePerNameButAddTwice();
    void addModelDialog();
    void directoryQuestionAndCancel();
    void menusFollowTheSelection();
    void textListRightClickRunsItsMenu();
    void formatSize_data();
    void formatSize();
    void switchWithScenes();
    void changeNameKeepsOldTextOnEmptyAnswer();
    void addLanguageThroughTheDialog();
    void listChangesReachTheCaptionButDropsDoNot();
};

void TestContentLists::dropTextUndoesEscapesAndUrls_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("urls");
    QTest::addColumn<QString>("expected");
    const QStringList none;
    QTest::newRow("blank") << "C:\\mods\\my%20ship.bod" << none << "C:\\mods\\my ship.bod";
    QTest::newRow("brackets, slash") << "a%5cb%5bv2%5d.bob" << none << "a/b[v2].bob";
    QTest::newRow("upper case stays") << "x%5Bv%5D.bod" << none << "x%5Bv%5D.bod";
    QTest::newRow("urls in text") << "file:///u/a%20b.bod\r\n/p/c%20d.pbd\r\nfile:///u/%C3%A9t%C3%A9.xml"
                                  << none << "/u/a b.bod\n/p/c d.pbd\r\n/u/\u00e9t\u00e9.xml";
    QTest::newRow("uri list") << QString() << QStringList{"file:///t/a%20b.bod", "file:///t/%5Bx%5D%25.bob"}
                              << "/t/a b.bod\n/t/[x]%.bob";
    // A literal "%20" in a file name survives the URL decoding and is then undone.
    QTest::newRow("escape in url") << QString() << QStringList{"file:///t/a%2520b.bod"} << "/t/a b.bod";
}

void TestContentLists::dropTextUndoesEscapesAndUrls()
{
    QFETCH(QString, text);
    QFETCH(QStringList, urls);
    QFETCH(QString, expected);
    QMimeData mime;
    if (!text.isNull())
        mime.setText(text);
    QList<QUrl> list;
    for (const QString& url : urls)
        list.append(QUrl::fromEncoded(url.toUtf8()));
    if (!list.isEmpty())
        mime.setUrls(list);
    QCOMPARE(WListView::DroppedText(&mime), expected);
}

void TestContentLists::listTakesTextDragsAndReportsRightClicks()
{
    WListView list(nullptr, "models list");
    list.setHeaderLabels({"File", "Directory"});
    list.resize(400, 200);
    list.setColumnWidth(0, 200);
    QTreeWidgetItem* row = AddRow(&list, {"a.bod", "objects/"});
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));

    QMimeData text, image;
    text.setText("a%20b.bod\nc.bob");
    image.setImageData(QImage(2, 2, QImage::Format_RGB32));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &image, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list.viewport(), &enter);
    QVERIFY(!enter.isAccepted());

    QSignalSpy dropped(&list, &WListView::DroppedFile);
    SendDrop(list.viewport(), image);
    SendDrop(list.viewport(), text);
    QCOMPARE(dropped.size(), 1);
    QCOMPARE(dropped.at(0).at(0).toString(), QString("a b.bod\nc.bob"));
    QCOMPARE(list.topLevelItemCount(), 1); // the list adds no rows by itself

    QSignalSpy clicked(&list, &WListView::RightButtonClicked);
    const QPoint onRow(250, list.visualItemRect(row).center().y());
    QContextMenuEvent onItem(QContextMenuEvent::Mouse, onRow, QPoint(900, 700));
    QCoreApplication::sendEvent(list.viewport(), &onItem);
    QContextMenuEvent below(QContextMenuEvent::Mouse, QPoint(10, 150), QPoint(20, 30));
    QCoreApplication::sendEvent(list.viewport(), &below);
    QCOMPARE(clicked.size(), 2);
    QCOMPARE(clicked.at(0).at(0).value<QTreeWidgetItem*>(), row);
    QCOMPARE(clicked.at(0).at(1).toPoint(), QPoint(900, 700));
    QCOMPARE(clicked.at(0).at(2).toInt(), 1);
    QCOMPARE(clicked.at(1).at(0).value<QTreeWidgetItem*>(), nullptr);
    QCOMPARE(clicked.at(1).at(2).toInt(), -1);
}

void TestContentLists::modelDropKeepsModelsAndAsksForTheDirectory()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();

    // Nothing of a model kind (a .pbb neither): no question, no row.
    window.Slot_Dropped("/a/readme.txt\n/a/ship.pbb\n/a/scene.xml\n");
    QVERIFY(fixture.prompts->shown.isEmpty());

    // A file manager's drop through the list.
    fixture.prompts->inputAnswers.enqueue(QString("objects\\ships\\new"));
    QMimeData mime;
    mime.setUrls({QUrl::fromLocalFile("/m/z ship.BOD"), QUrl::fromLocalFile("/m/a.pbd"),
                  QUrl::fromLocalFile("/m/notes.txt"), QUrl::fromLocalFile("/m/b.bob")});
    SendDrop(window.modelList()->viewport(), mime);
    QCOMPARE(fixture.prompts->shown.size(), 1);
    QCOMPARE(fixture.prompts->shown.first().buttons, QStringList{"objects/"}); // the start text
    QCOMPARE(Column(window.modelList()), (QStringList{"/m/a.pbd", "/m/b.bob", "/m/z ship.BOD"}));
    QCOMPARE(Column(window.modelList(), 1), QStringList(3, "objects/ships/new"));

    window.Slot_Dropped("/m/d.bod"); // cancelled
    QCOMPARE(window.modelList()->topLevelItemCount(), 3);

    // The other-files list takes every line, with an empty start text.
    fixture.prompts->inputAnswers.enqueue(QString("maps"));
    window.Slot_OtherDropped("\r\n/f/readme.txt\r\n\r\n/f/tex.jpg\r\n");
    QCOMPARE(fixture.prompts->shown.last().buttons, QStringList{QString()});
    QCOMPARE(Column(window.otherList()), (QStringList{"/f/readme.txt", "/f/tex.jpg"}));
}

void TestContentLists::scriptsDropOncePerNameButAddTwice()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QTemporaryDir dir;
    const QString script = dir.filePath("setup.ship.xml");
    QVERIFY(WriteFile(script, 1500));

    AddRow(window.scriptList(), {"<PACKAGE>/scripts/init.pck", "", "0"});
    window.Slot_ScriptDropped(script + "\n/o/init.pck\n/x/Init.pck\n/x/run.txt\n/y/setup.ship.xml\n" +
                              script);
    QVERIFY(fixture.prompts->shown.isEmpty());
    QStringList expected{"/x/Init.pck", script, "<PACKAGE>/scripts/init.pck"};
    expected.sort();
    QCOMPARE(Column(window.scriptList()), expected);
    const QTreeWidgetItem* row = window.scriptList()->findItems(script, Qt::MatchExactly).value(0);
    QVERIFY(row);
    QCOMPARE(row->text(1), "    1.46" + window.uiText()[Txt::SizeBytes + 1]);
    QCOMPARE(row->text(2), QString::number(QFileInfo(script).lastModified().toSecsSinceEpoch()));

    AppSettings settings = window.settings();
    settings.ScriptDir = "/scripts";
    window.setSettings(settings);
    for (int i = 0; i < 2; ++i)
        fixture.prompts->filesAnswers.enqueue({script});
    window.Slot_AddScript();
    window.Slot_AddScript();
    QCOMPARE(fixture.prompts->shown.first().text, QString("/scripts"));
    QCOMPARE(window.scriptList()->findItems(script, Qt::MatchExactly).size(), 3);
}

void TestContentLists::addModelDialog()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    AppSettings settings = window.settings();
    settings.ModelDir = "/models";
    window.setSettings(settings);
    QTemporaryDir dir;
    for (const char* name : {"a%20b.bod", "hull.pbb"})
        QVERIFY(WriteFile(dir.filePath(name), 10));

    window.Slot_AddModel(); // no file chosen: nothing more is asked
    QCOMPARE(fixture.prompts->shown.size(), 1);
    QCOMPARE(fixture.prompts->shown.first().text, QString("/models"));

    fixture.prompts->filesAnswers.enqueue(
        {dir.filePath("a%20b.bod"), dir.filePath("gone.bod"), dir.filePath("hull.pbb")});
    fixture.prompts->inputAnswers.enqueue(QString("objects/ships"));
    window.Slot_AddModel();
    QCOMPARE(fixture.prompts->shown.last().buttons, QStringList{"objects/"});
    // A "%20" in a dialog's answer is part of the name; a vanished file is left out.
    QCOMPARE(Column(window.modelList()), (QStringList{dir.filePath("a%20b.bod"), dir.filePath("hull.pbb")}));
}

void TestContentLists::directoryQuestionAndCancel()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    AddRow(window.modelList(), {"/m/c.bod", "objects/c"}, true);
    AddRow(window.modelList(), {"/m/a.bod", "objects/a"}, true);
    AddRow(window.modelList(), {"/m/b.bod", "objects/b"});
    window.modelList()->sortItems(0, Qt::AscendingOrder);

    window.Slot_ChangeDir(); // cancelled
    // The question starts at the first selected row as shown.
    QCOMPARE(fixture.prompts->shown.first().buttons, QStringList{"objects/a"});
    QCOMPARE(Column(window.modelList(), 1), (QStringList{"objects/a", "objects/b", "objects/c"}));

    fixture.prompts->inputAnswers.enqueue(QString("objects\\new"));
    window.Slot_ChangeDir();
    QCOMPARE(Column(window.modelList(), 1), (QStringList{"objects/new", "objects/b", "objects/new"}));

    AddRow(window.otherList(), {"/f/x.txt", ""}, true);
    window.Slot_ChangeOtherDir();
    QCOMPARE(fixture.prompts->shown.last().text, window.uiText()[Txt::FileTargetDirLabel]);

    window.modelList()->clearSelection(); // nothing selected: nothing is asked
    const qsizetype before = fixture.prompts->shown.size();
    window.Slot_ChangeDir();
    window.Slot_ChangeModel();
    QCOMPARE(fixture.prompts->shown.size(), before);
}

void TestContentLists::menusFollowTheSelection()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QStringList& t = window.uiText();
    QTreeWidgetItem* first = AddRow(window.modelList(), {"/m/a.bod", ""});
    QTreeWidgetItem* second = AddRow(window.modelList(), {"/m/b.bod", ""});

    using namespace Txt;
    const auto text = [&](int index) { return t[index]; };
    QCOMPARE(Entries(*window.BuildModelMenu(nullptr)),
             (QStringList{text(MenuAdd), "-", text(MenuClearList)}));
    first->setSelected(true);
    QCOMPARE(Entries(*window.BuildModelMenu(first)),
             (QStringList{text(MenuAdd), text(MenuRemove), "-", text(MenuChangeFile), text(MenuChangeDir),
                          "-", text(MenuSwitchScene), text(MenuSwitchCockpit), "-", text(MenuClearList)}));
    second->setSelected(true); // two rows: no change of the file, no switch
    QCOMPARE(
        Entries(*window.BuildModelMenu(first)),
        (QStringList{text(MenuAdd), text(MenuRemove), "-", text(MenuChangeDir), "-", text(MenuClearList)}));

    QTreeWidgetItem* other = AddRow(window.otherList(), {"/f/a", ""}, true);
    QCOMPARE(Entries(*window.BuildOtherMenu(other)),
             (QStringList{text(MenuAddFile), text(MenuRemoveFile), "-", text(MenuChangeFile),
                          text(MenuChangeDir), "-", text(MenuClearList)}));

    QTreeWidgetItem* script = AddRow(window.scriptList(), {"/s/a.xml", "", "0"});
    QCOMPARE(Entries(*window.BuildScriptMenu(script)),
             (QStringList{text(MenuAdd), text(MenuRemove), "-", text(MenuClearList)}));
    window.TextRaw->clear(); // the import entries need a ship line
    QCOMPARE(Entries(*window.BuildTextMenu(nullptr)),
             (QStringList{text(MenuAddLanguage), "-", text(MenuClearList)}));

    // An entry runs its slot.
    window.BuildModelMenu(first)->actions().at(1)->trigger();
    QCOMPARE(window.modelList()->topLevelItemCount(), 0);
}

void TestContentLists::textListRightClickRunsItsMenu()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    const QStringList& t = window.uiText();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.TabData->setCurrentWidget(window.TabText);
    QTreeWidgetItem* text = AddRow(window.ListText, {"44", "Name", "Desc"}, true);

    // The menu runs modally: a timer reads it and picks "remove" as a user would.
    QStringList seen;
    QTimer picker;
    connect(&picker, &QTimer::timeout, [&] {
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            seen = Entries(*menu);
            menu->setActiveAction(menu->actions().value(seen.indexOf(t[Txt::MenuRemoveLanguage])));
            QTest::keyClick(menu, Qt::Key_Return);
        }
    });
    picker.start(20);
    const QPoint pos = window.ListText->visualItemRect(text).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, pos, window.ListText->viewport()->mapToGlobal(pos));
    QCoreApplication::sendEvent(window.ListText->viewport(), &event);
    picker.stop();
    QCOMPARE(seen.size(), 10); // with a ship line and a row: every entry
    QCOMPARE(window.ListText->topLevelItemCount(), 0);
}

void TestContentLists::formatSize_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("number");
    QTest::addColumn<int>("unit");
    QTest::newRow("999 bytes") << qint64(999) << "999" << 0;
    QTest::newRow("1000 bytes") << qint64(1000) << "0.98" << 1;
    QTest::newRow("below 1000 KB") << qint64(1023999) << "1000.00" << 1;
    QTest::newRow("1000 KB") << qint64(1024000) << "0.98" << 2;
    QTest::newRow("1000 MB") << qint64(1048576000) << "0.98" << 3;
    QTest::newRow("past the last unit") << (qint64(1) << 40) << "1024.00" << 3;
}

void TestContentLists::formatSize()
{
    QFETCH(qint64, size);
    QFETCH(QString, number);
    QFETCH(int, unit);
    const QStringList texts = PlaceholderUiTexts(UiTextCount);
    QCOMPARE(FormatSize(size, texts), "    " + number + texts[Txt::SizeBytes + unit]);
}

void TestContentLists::switchWithScenes()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    AddRow(window.modelList(), {"/m/b.bod", "objects/b"});
    AddRow(window.modelList(), {"/m/a.bod", "objects/a"}, true);

    window.Slot_SwitchScene(); // an empty scene takes the model, and the row goes
    QCOMPARE(window.LineSceneFile->text(), QString("/m/a.bod"));
    QCOMPARE(Column(window.modelList()), QStringList{"/m/b.bod"});

    window.LineSceneFileCp->setText("/m/cockpit.bod"); // a filled one changes places
    window.modelList()->topLevelItem(0)->setSelected(true);
    window.Slot_SwitchCockpit();
    QCOMPARE(window.LineSceneFileCp->text(), QString("/m/b.bod"));
    QCOMPARE(Column(window.modelList()), QStringList{"/m/cockpit.bod"});
    QCOMPARE(Column(window.modelList(), 1), QStringList{"objects/b"});
}

void TestContentLists::changeNameKeepsOldTextOnEmptyAnswer()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    QTreeWidgetItem* row = AddRow(window.ListText, {"49", "Falke", "Schnell"}, true);

    fixture.prompts->inputAnswers.enqueue(QString()); // OK with nothing typed
    window.Slot_ChangeName();
    QCOMPARE(fixture.prompts->shown.first().buttons, QStringList{"Falke"}); // starts at the old name
    QCOMPARE(row->text(1), QString("Falke"));

    // A double click on the description column changes the description.
    fixture.prompts->inputAnswers.enqueue(QString("Sehr schnell"));
    window.Slot_DCTextMenu(row, 2);
    QCOMPARE(row->text(2), QString("Sehr schnell"));
    QCOMPARE(row->text(1), QString("Falke"));
}

void TestContentLists::addLanguageThroughTheDialog()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    int shown = 0;
    bool accept = true;
    QTimer driver;
    connect(&driver, &QTimer::timeout, [&] {
        auto* dialog = qobject_cast<LanguageText*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        ++shown;
        dialog->SpinLang->setValue(49);
        dialog->LineName->setText("Falke");
        dialog->TextDesc->setPlainText("Ein schnelles\nSchiff");
        (accept ? dialog->ButOk : dialog->ButCancel)->click();
    });
    driver.start(20);

    AddRow(window.ListText, {"49", "Old", "Old"});
    window.Slot_AddLanguage();
    QCOMPARE(shown, 1);
    QCOMPARE(window.ListText->topLevelItemCount(), 2); // the same language is not refused
    const QTreeWidgetItem* added = window.ListText->findItems("Falke", Qt::MatchExactly, 1).value(0);
    QVERIFY(added);
    QCOMPARE(added->text(0), QString("49"));
    QCOMPARE(added->text(2), QString("Ein schnelles\nSchiff"));

    accept = false;
    window.Slot_AddLanguage();
    driver.stop();
    QCOMPARE(window.ListText->topLevelItemCount(), 2);
}

void TestContentLists::listChangesReachTheCaptionButDropsDoNot()
{
    WindowFixture fixture;
    DCreateShip& window = fixture.make();
    // A saved, unchanged package.
    window.TextRaw->setPlainText("1;2;3");
    auto saved = std::make_unique<ShipPackage>();
    saved->Data = "1;2;3";
    saved->Author = window.LineAuthor->text();
    saved->Web = window.LineWeb->text();
    saved->Mirror1 = window.LineMirror1->text();
    saved->Mirror2 = window.LineMirror2->text();
    window.document().Adopt(std::move(saved), "/somewhere/ship.xsp");
    window.UpdateCaption();
    QVERIFY(!HasStar(window));
    QTemporaryDir dir;
    QVERIFY(WriteFile(dir.filePath("a.bod"), 5));

    // A drop shows only at the next change of a field.
    fixture.prompts->inputAnswers.enqueue(QString("objects/"));
    window.Slot_Dropped(dir.filePath("a.bod"));
    QCOMPARE(window.modelList()->topLevelItemCount(), 1);
    QVERIFY(!HasStar(window));
    window.LineName->setText("x");
    window.LineName->clear();
    QVERIFY(HasStar(window));
    window.modelList()->topLevelItem(0)->setSelected(true);
    window.Slot_RemoveModel(); // back to the saved state
    QVERIFY(!HasStar(window));

    // Each operation must refresh a caption that drops on two lists left
    // stale; each leaves a dropped row, so the star must show.
    const QList<std::pair<const char*, std::function<void()>>> operations = {
        {"add model",
         [&] {
             fixture.prompts->filesAnswers.enqueue({dir.filePath("a.bod")});
             fixture.prompts->inputAnswers.enqueue(QString("o/"));
             window.Slot_AddModel();
         }},
        {"change dir",
         [&] {
             fixture.prompts->inputAnswers.enqueue(QString("o/"));
             window.modelList()->topLevelItem(0)->setSelected(true);
             window.Slot_ChangeDir();
         }},
        {"remove script",
         [&] {
             window.scriptList()->topLevelItem(0)->setSelected(true);
             window.Slot_RemoveScript();
         }},
        {"clear models", [&] { window.ClearModels(); }},
        {"clear texts", [&] { window.ClearText(); }},
    };
    for (const auto& [name, operation] : operations) {
        window.modelList()->clear();
        window.scriptList()->clear();
        window.UpdateCaption();
        fixture.prompts->inputAnswers.enqueue(QString("objects/"));
        window.Slot_Dropped(dir.filePath("a.bod"));
        window.Slot_ScriptDropped("/s/a.xml");
        QVERIFY2(!HasStar(window), name);
        operation();
        QVERIFY2(HasStar(window), name);
    }
}

QTEST_MAIN(TestContentLists)
#include "tst_contentlists.moc"
