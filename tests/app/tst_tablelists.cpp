// The dummy, component and cockpit lists of the main window: their boxes,
// menus and imports, on lists of their own with a scripted prompter and an
// import that answers by itself.
#include "TestSupport.h"
#include "app/TableListControllers.h"
#include "app/WindowTexts.h"
#include "core/AppSettings.h"

#include <QMenu>
#include <QTreeWidget>
#include <QtTest>

namespace {

struct Lists
{
    Lists()
    {
        for (int i = 0; i < 420; ++i)
            texts.append(QString("text%1").arg(i));
    }

    WindowContext context()
    {
        return {nullptr, prompts, texts, texts, settings, [this] { ++modified; }};
    }

    ScriptedPrompter prompts;
    QStringList texts;
    AppSettings settings;
    int modified = 0;
    QTreeWidget list;
};

// Triggers the menu entry with the given text, as a click on it would.
bool Choose(QMenu& menu, const QString& text)
{
    for (QAction* action : menu.actions())
        if (action->text() == text) {
            action->trigger();
            return true;
        }
    return false;
}

QStringList Cells(const QTreeWidget& list, int column)
{
    QStringList cells;
    for (int i = 0; i < list.topLevelItemCount(); ++i)
        cells.append(list.topLevelItem(i)->text(column));
    return cells;
}

} // namespace

class TestTableLists : public QObject
{
    Q_OBJECT
private slots:
    void dummyRowsThroughTheirBoxes();
    void importsAddWhatWasTicked();
    void removalTakesWholeGroups();
};

void TestTableLists::dummyRowsThroughTheirBoxes()
{
    Lists lists;
    DummyListController dummies(&lists.list, lists.context());
    // No section: nothing added. No text: the row comes anyway.
    for (const std::optional<QString>& answer :
         {std::optional<QString>(), std::optional<QString>("SDTYPE_DOCK"), std::optional<QString>()})
        lists.prompts.inputAnswers.enqueue(answer);
    dummies.Add();
    dummies.Add();
    QCOMPARE(dummies.Rows(), (QList<DummyEntry>{{"SDTYPE_DOCK", ""}}));
    QCOMPARE(lists.modified, 1);

    QTreeWidgetItem* row = lists.list.topLevelItem(0);
    for (const char* answer : {"", "dock;1;", "sdtype_gun"}) // an empty text changes nothing
        lists.prompts.inputAnswers.enqueue(QString(answer));
    std::unique_ptr<QMenu> menu = dummies.BuildMenu(row);
    QVERIFY(Choose(*menu, lists.texts[Txt::MenuChangeData]));
    QCOMPARE(row->text(1), QString());
    QVERIFY(Choose(*menu, lists.texts[Txt::MenuChangeData]));
    QVERIFY(Choose(*menu, lists.texts[Txt::MenuChangeSection]));
    QCOMPARE(dummies.Rows(), (QList<DummyEntry>{{"sdtype_gun", "dock;1;"}}));
    // The data box names the row's section.
    QCOMPARE(lists.prompts.shown[3].text, lists.texts[Txt::DummyDataLabel] + " 'SDTYPE_DOCK'");

    dummies.Show({{"SDTYPE_DOCK", "d;"}, {"SDTYPE_GUN", "g;"}});
    QCOMPARE(dummies.GunBodies(), (QStringList{"dock;1;", "g;"})); // the section's case aside
    menu = dummies.BuildMenu(lists.list.topLevelItem(0));
    QVERIFY(Choose(*menu, lists.texts[Txt::MenuRemoveDummy]));
    QCOMPARE(dummies.Rows().size(), 2);
    QVERIFY(Choose(*dummies.BuildMenu(nullptr), lists.texts[Txt::MenuClearList]));
    QVERIFY(dummies.Rows().isEmpty());
}

void TestTableLists::importsAddWhatWasTicked()
{
    Lists lists;
    std::optional<ImportedRows> answer; // nothing shown
    const TableImporter importer = [&](ImportKind) { return answer; };
    DummyListController dummies(&lists.list, lists.context(), importer);
    dummies.Import();
    QCOMPARE(lists.modified, 0);

    answer = ImportedRows{}; // shown, nothing ticked: still a change of the document
    dummies.Import();
    QCOMPARE(lists.modified, 1);
    answer->dummies = {{"SDTYPE_GUN", {"a;", "a;"}}, {"SDTYPE_DOCK", {"b;"}}};
    dummies.Import();
    dummies.Import();
    QCOMPARE(dummies.Rows().size(), 6); // import only adds: twice is twice
    QCOMPARE(dummies.Rows().count({"SDTYPE_GUN", "a;"}), 4);
    QCOMPARE(lists.modified, 3);

    QTreeWidget tree;
    ComponentListController components(&tree, lists.context(), importer);
    answer->components = {{"SCTYPE_LASER", {{"body", {"x;", "y;"}}, {"empty", {}}}}};
    components.Import();
    QCOMPARE(tree.topLevelItemCount(), 2); // a group without lines is a row too...
    QCOMPARE(components.Rows(),
             (QList<ComponentEntry>{{"SCTYPE_LASER", "body", "x;"},
                                    {"SCTYPE_LASER", "body", "y;"}})); // ...that stores nothing
}

void TestTableLists::removalTakesWholeGroups()
{
    Lists lists;
    ComponentListController components(&lists.list, lists.context());
    components.Show({{"S", "one", "1;"}, {"S", "one", "2;"}, {"S", "two", "3;"}});
    QTreeWidgetItem* child = lists.list.topLevelItem(0)->child(1);
    QVERIFY(Choose(*components.BuildMenu(child), lists.texts[Txt::MenuRemoveComponent]));
    QCOMPARE(components.Rows(), (QList<ComponentEntry>{{"S", "two", "3;"}}));
    QCOMPARE(lists.modified, 1);

    QTreeWidget tree;
    CockpitListController cockpits(&tree, lists.context());
    cockpits.Show({"a;COCK_A;", "b;COCK_B;"});
    QVERIFY(Choose(*cockpits.BuildMenu(tree.topLevelItem(1)), lists.texts[Txt::MenuRemoveCockpit]));
    QCOMPARE(Cells(tree, 0), QStringList{"COCK_A"});
    QVERIFY(Choose(*cockpits.BuildMenu(nullptr), lists.texts[Txt::MenuClearList]));
    QCOMPARE(tree.topLevelItemCount(), 0);
    QCOMPARE(lists.modified, 3);
}

QTEST_MAIN(TestTableLists)
#include "tst_tablelists.moc"
