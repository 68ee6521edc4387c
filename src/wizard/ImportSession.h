// The import wizard's work, free of widgets: one mod catalog, the ship chosen
// from it, and the files, cockpits, dummies, components and texts worked out
// for that ship. DImportWizard shows this state on its pages and writes the
// user's corrections back; tests and benchmarks drive it directly.
//
// How a ship's parts are found:
//   - fields 16 and 17 of its line name the ship and cockpit scenes; the
//     catalog entry of that name gives the scene its extension;
//   - every body a scene places is matched with the mod's models (by short
//     name), its dummy rows and its component groups;
//   - so are the bodies of the ship's gun entries;
//   - ticked dummy rows may name further scenes (from their fifth field on):
//     those are read as well, and what they name ticks further rows, down to
//     MaxSceneDepth levels; a scene is read at most once, so circular
//     references end;
//   - the scenes of the cockpits the ship's turrets use are followed the
//     same way;
//   - the chosen models name their textures in their material lines.
//
// Work files (tables, scenes read for their bodies, language pages) lie in a
// directory of their own below <program directory>/temp, removed with the
// session. Only Finish writes into <program directory>/ShipInstall.
#pragma once

#include "language/GameText.h"
#include "wizard/ImportParts.h"
#include "wizard/ImportResult.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

struct ImportSetup
{
    QString Catalog;    // the mod's .cat
    QString ProgramDir; // work files and ShipInstall lie below it
    QString BaseLang = QStringLiteral("44");
    // The main window's names; each may be null.
    const QList<GameText>* GameShipNames = nullptr;
    const QList<IdName>* Variants = nullptr;
    const QStringList* VariantNames = nullptr; // one for each entry of Variants
};

// A row of the ship list: the ship's id, its name, and its running number
// from 1 as four digits. Line is the index into the table's ship lines.
struct ShipRow
{
    QString Id;
    QString Name;
    QString Number;
    int Line = 0;
};

// How deep scenes named by dummy rows are followed.
inline constexpr int MaxSceneDepth = 16;

class ImportSession
{
public:
    explicit ImportSession(ImportSetup setup);
    ~ImportSession();
    ImportSession(const ImportSession&) = delete;
    ImportSession& operator=(const ImportSession&) = delete;

    // Reads the catalog: its tables, its entries and its names for the ship
    // list. False when it holds no ship table; nothing else is read then.
    bool Open();

    const QString& Catalog() const { return m_setup.Catalog; }
    const QList<ShipRow>& ShipRows() const { return m_shipRows; }
    // The optional pages: present when the mod holds their table, or, for
    // textures, an entry below dds, tex or textures.
    bool HasDummies() const { return m_hasDummies; }
    bool HasCockpits() const { return m_hasCockpits; }
    bool HasComponents() const { return m_hasComponents; }
    bool HasTextures() const { return m_hasTextures; }

    // Works out the parts of the ship on line `line` of the table (ShipRow::Line).
    // Starts every list afresh.
    void CollectShipParts(int line);
    // Reads the scene `scene` (a catalog name) and matches its bodies.
    void MatchScene(const QString& scene);
    // Moves every model of short name `modelName` to the chosen models, and
    // ticks the first dummy row and component group of `partName`.
    void MatchPart(const QString& modelName, const QString& partName);
    // Fills the cockpit lists from the ship's turret slots.
    void FillCockpitLists();
    // Follows the ticked dummy rows to the models (and scenes) they name.
    void CollectDummyModels();
    // Moves the textures that the chosen models name to the chosen textures.
    // Binary models are read through x2bc at `x2bcPath`; without it they are
    // passed over.
    void ScanModelTextures(const QString& x2bcPath);
    // Fills the texts from the mod's language pages, for the ship's text id,
    // and takes the ship's name from them.
    void ReadShipTexts();
    // Reads the ship's texts from language files on disk (plain or .pck).
    // The ship's name is taken from them only while it is empty. True when a
    // row was added.
    bool ImportTextFiles(const QStringList& files);

    const QString& ShipLine() const { return m_shipLine; }
    const QString& ShipScene() const { return m_shipScene; }
    const QString& CockpitScene() const { return m_cockpitScene; }
    const QString& ShipName() const { return m_shipName; }
    void SetShipName(const QString& name) { m_shipName = name; }
    bool TextsRead() const { return m_textsRead; }

    PickList& Models() { return m_models; }
    PickList& Textures() { return m_textures; }
    PickList& Cockpits() { return m_cockpits; }
    CheckTree& Dummies() { return m_dummies; }
    CheckTree& Components() { return m_components; }
    QList<ImportedText>& Texts() { return m_texts; }
    const PickList& Models() const { return m_models; }
    const PickList& Textures() const { return m_textures; }
    const PickList& Cockpits() const { return m_cockpits; }
    const CheckTree& Dummies() const { return m_dummies; }
    const CheckTree& Components() const { return m_components; }
    const QList<ImportedText>& Texts() const { return m_texts; }

    // What the ship names but the mod does not hold: scenes, bodies that
    // match no model, dummy or component, and scenes nested too deep.
    const QStringList& NotFound() const { return m_notFound; }

    // Unpacks the chosen scenes, models and textures below ShipInstall and
    // gathers everything for the main window. A file that does not unpack is
    // left out.
    ImportResult Finish() const;

    // The directory of the session's work files (empty when it could not be made).
    QString WorkDir() const;

private:
    struct PartMatch
    {
        QStringList MovedModels;
        CheckPlace NewDummy; // a dummy row this match ticked
    };

    bool ReadTables();
    void ReadEntries();
    void ReadModTexts();
    void FillShipRows();
    QString ShipNameOf(const QString& line, const GameTextIndex& modIndex,
                       const GameTextIndex& gameIndex) const;
    void OfferEntries();
    PartMatch MatchPartOnce(const QString& modelName, const QString& partName);
    void MatchBodies(const QStringList& bodies, QList<CheckPlace>* newDummies);
    QStringList ReadSceneEntry(const QString& entry, bool requireVersion);
    void FollowScenes(QList<CheckPlace> rows, const QStringList& scenes);
    QStringList ModelCandidates(const QString& modelName) const;
    void NoteNotFound(const QString& what);
    void AddTextRow(const QString& sourceName, const QString& path, QString* name44, QString* firstName);
    QString ExtractToShipInstall(const QString& entry) const;

    ImportSetup m_setup;
    std::unique_ptr<QTemporaryDir> m_work;

    // Read once by Open.
    QStringList m_entries;
    QHash<QString, QStringList> m_modelsByShortName; // object entries, in catalog order
    QStringList m_shipLines;
    QStringList m_cockpitLines; // data lines, in order: a turret slot counts them from 0
    QList<CheckSection> m_dummySections;
    QList<CheckSection> m_componentSections;
    QList<GameText> m_modTexts;
    QStringList m_variantNames;
    QList<ShipRow> m_shipRows;
    bool m_hasDummies = false;
    bool m_hasCockpits = false;
    bool m_hasComponents = false;
    bool m_hasTextures = false;

    // The chosen ship.
    QString m_shipLine;
    QString m_shipScene;
    QString m_cockpitScene;
    bool m_shipSceneFound = false;
    bool m_cockpitSceneFound = false;
    QString m_shipName;
    bool m_textsRead = false;
    PickList m_models;
    PickList m_textures;
    PickList m_cockpits;
    CheckTree m_dummies;
    CheckTree m_components;
    QList<ImportedText> m_texts;
    QStringList m_notFound;
};
