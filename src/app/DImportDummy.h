// Importing rows of the game's Dummies or Components table into a ship: the
// user picks a table (a plain .txt, a packed .pck or a catalog that holds
// types\Dummies.pck or types\Components.pck), then ticks rows in a check tree
// of its sections. The caller adds what comes back to its lists; importing
// only ever adds, so a row imported twice stands there twice.
#pragma once

#include "forms/ImportDummy.h"
#include "gamedata/GroupedTables.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class Prompter;

// The interface texts of the import.
namespace ImportDummyText {
enum : int
{
    CatalogFilter = 56,
    TableMissingText = 58,
    TableMissingCaption = 59,
    Ok = 60,
    Cancel = 90,
    SectionColumn = 104,
    DataColumn = 105,
    DummyFilter = 106,
    DummyFileCaption = 107,
    ComponentFilter = 108,
    ComponentFileCaption = 109,
    DummyCaption = 110,
    ComponentCaption = 111,
    ImportButton = 112
};
} // namespace ImportDummyText

enum class ImportKind
{
    Dummies,
    Components
};

// The rows the user ticked, by the section they came from, in the order the
// tree shows them: for Dummies one line for each ticked row, for Components
// each ticked group whole (a group without lines comes as one too).
struct ImportedRows
{
    QList<DummySection> dummies;
    QList<ComponentSection> components;
};

class DImportDummy : public ImportDummy
{
    Q_OBJECT
public:
    DImportDummy(Prompter& prompter, const QStringList& uiText, ImportKind kind, QWidget* parent = nullptr);

    // The whole import, starting the file dialog in `startDir`. Nothing when
    // no tree was shown (the choice was cancelled, the catalog lacks the
    // table, the file cannot be read); otherwise the rows ticked when the
    // dialog was accepted, none when it was cancelled.
    std::optional<ImportedRows> Run(const QString& startDir);

    // Fills the tree from a table's text; `shownPath` goes into the caption.
    void Fill(const QString& text, const QString& shownPath);
    // The rows ticked in the tree.
    ImportedRows CheckedRows() const;

protected:
    // Shows the dialog modally; tests replace it.
    virtual int ExecDialog();

private:
    QString FileFilter() const;
    QString CatalogEntry() const;
    // The table's text, or nothing when it cannot be had. `workDir` receives
    // unpacked copies; `shown` the path to name in the caption.
    std::optional<QString> ReadTable(const QString& chosen, const QString& workDir, QString& shown);

    Prompter& m_prompter;
    QStringList m_uiText;
    ImportKind m_kind;
};
