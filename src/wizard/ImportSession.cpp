#include "wizard/ImportSession.h"

#include "catfs/transfer/GameFile.h"
#include "deploy/ModelTextures.h"
#include "gamedata/CockpitTable.h"
#include "gamedata/GroupedTables.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"
#include "wizard/ImportNames.h"
#include "wizard/SceneReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace {

QString ReadWholeText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(file.readAll());
}

// A line of nothing but semicolons (and blanks) has no field to go by: the
// tables' readers pass it over.
bool IsOnlySeparators(const QString& line)
{
    for (QChar c : line)
        if (c != u';' && !c.isSpace())
            return false;
    return true;
}

QString WithoutSeparatorLines(const QString& text)
{
    QStringList kept;
    for (const QString& line : text.split(u'\n'))
        if (!IsOnlySeparators(line) || line.trimmed().isEmpty())
            kept.append(line);
    return kept.join(u'\n');
}

QStringList WithoutSeparatorLines(const QStringList& lines)
{
    QStringList kept;
    for (const QString& line : lines)
        if (!IsOnlySeparators(line))
            kept.append(line);
    return kept;
}

QString Extension(const QString& entry)
{
    const QString name = EntryFileName(entry);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot < 0 ? QString() : name.mid(dot + 1);
}

QString WithForwardSlashes(QString name)
{
    return name.replace(u'\\', u'/');
}

QString ShortKey(const QString& modelName)
{
    return QString(modelName).replace(u'/', u'\\').toLower();
}

// The text of `id` in `texts`: the first entry with that id wins.
QString LookUpText(const QList<GameText>& texts, const GameTextIndex& index, int id, bool* found)
{
    const auto position = index.constFind(id);
    if (position == index.constEnd())
        return {};
    *found = true;
    return texts[*position].Text;
}

} // namespace

ShipyardBox ShipyardOfRace(int race)
{
    switch (race) {
    case 1:
        return ShipyardBox::Argon;
    case 2:
        return ShipyardBox::Boron;
    case 3:
        return ShipyardBox::Split;
    case 4:
        return ShipyardBox::Paranid;
    case 5:
        return ShipyardBox::Teladi;
    case 6:
        return ShipyardBox::Xenon;
    case 8:
        return ShipyardBox::Pirate;
    case 13:
        return ShipyardBox::Friend;
    default:
        return ShipyardBox::None;
    }
}

ImportSession::ImportSession(ImportSetup setup) : m_setup(std::move(setup))
{
    const QString temp = m_setup.ProgramDir + "/temp";
    QDir().mkpath(temp);
    m_work = std::make_unique<QTemporaryDir>(temp + "/wizard-XXXXXX");
    if (!m_work->isValid())
        m_work.reset();
}

ImportSession::~ImportSession() = default;

QString ImportSession::WorkDir() const
{
    return m_work ? m_work->path() : QString();
}

bool ImportSession::Open()
{
    if (!m_work || !ReadTables())
        return false;
    ReadEntries();
    ReadModTexts();
    FillShipRows();
    return true;
}

bool ImportSession::ReadTables()
{
    const QString work = WorkDir() + "/table.txt";
    auto extract = [&](const char* table) {
        const bool ok = GameFileExtract(m_setup.Catalog + "::types\\" + table + ".pck", work, false, false);
        QString text = ok ? ReadWholeText(work) : QString();
        QFile::remove(work);
        return ok ? std::optional<QString>(text) : std::nullopt;
    };

    const std::optional<QString> ships = extract("TShips");
    if (!ships)
        return false;
    m_shipLines = WithoutSeparatorLines(ParseTypesText(*ships).records);

    if (const std::optional<QString> cockpits = extract("TCockpits")) {
        m_hasCockpits = true;
        m_cockpitLines = ParseTypesText(*cockpits).records;
    }
    if (const std::optional<QString> dummies = extract("Dummies")) {
        m_hasDummies = true;
        for (const DummySection& section : ParseDummies(WithoutSeparatorLines(*dummies))) {
            CheckSection rows{section.Name, {}};
            for (const QString& line : section.Lines)
                rows.Rows.append(CheckRow(line));
            m_dummySections.append(rows);
        }
    }
    if (const std::optional<QString> components = extract("Components")) {
        m_hasComponents = true;
        for (const ComponentSection& section : ParseComponents(WithoutSeparatorLines(*components))) {
            CheckSection rows{section.Name, {}};
            for (const ComponentGroup& group : section.Groups)
                rows.Rows.append(CheckRow(group.Id, group.Lines));
            m_componentSections.append(rows);
        }
    }
    return true;
}

void ImportSession::ReadEntries()
{
    for (const GameFileListEntry& entry : GameFileList(m_setup.Catalog)) {
        // A name that would unpack outside the work directory is no file of a ship.
        if (!IsContainedEntryName(entry.name))
            continue;
        m_entries.append(entry.name);
        if (IsObjectEntry(entry.name))
            m_modelsByShortName[ModelShortName(entry.name)].append(entry.name);
        if (IsTextureEntry(entry.name))
            m_hasTextures = true;
    }
}

void ImportSession::ReadModTexts()
{
    const bool withVariants = m_setup.Variants && m_setup.VariantNames;
    if (withVariants) {
        m_variantNames = *m_setup.VariantNames;
        m_variantNames.resize(m_setup.Variants->size());
    }
    const QString work = WorkDir() + "/textfile.txt";
    for (const QString& entry : std::as_const(m_entries)) {
        if (!IsLanguageEntry(entry) || GameTextLanguage(entry) != m_setup.BaseLang)
            continue;
        if (GameFileExtract(m_setup.Catalog + "::" + entry, work, false, false)) {
            GameTextHandler handler(&m_modTexts, withVariants ? m_setup.Variants : nullptr,
                                    withVariants ? &m_variantNames : nullptr, -1, nullptr, nullptr);
            ParseGameTextFile(work, handler);
            if (withVariants)
                ResolveVariantReferences(*m_setup.Variants, m_variantNames);
        }
        QFile::remove(work);
    }
}

QString ImportSession::ShipNameOf(const QString& line, const GameTextIndex& modIndex,
                                  const GameTextIndex& gameIndex) const
{
    const int textId = ShipFieldInt(line, ShipLineField::NameId);
    bool found = false;
    QString name = LookUpText(m_modTexts, modIndex, textId, &found);
    if (!found && m_setup.GameShipNames)
        name = LookUpText(*m_setup.GameShipNames, gameIndex, textId, &found);
    if (name.isEmpty() || !m_setup.VariantNames)
        return name;
    const QStringList& variants = m_setup.Variants ? m_variantNames : *m_setup.VariantNames;
    const int variation = ShipFieldInt(line, ShipLineField::Variation);
    if (variation > 0 && variation <= variants.size() && !variants[variation - 1].isEmpty())
        name += u' ' + variants[variation - 1];
    return name;
}

void ImportSession::FillShipRows()
{
    GameTextIndex modIndex;
    GameTextIndex gameIndex;
    BuildGameTextIndex(m_modTexts, modIndex);
    if (m_setup.GameShipNames)
        BuildGameTextIndex(*m_setup.GameShipNames, gameIndex);
    for (int i = 0; i < m_shipLines.size(); ++i) {
        const QString& line = m_shipLines[i];
        m_shipRows.append({ShipLineId(line), ShipNameOf(line, modIndex, gameIndex),
                           QString::number(i + 1).rightJustified(4, u'0'), i});
    }
}

void ImportSession::CollectShipParts(int line)
{
    m_shipLine = m_shipLines.value(line);
    m_shipScene = SceneLookupName(ShipField(m_shipLine, ShipLineField::ShipScene));
    m_cockpitScene = SceneLookupName(ShipField(m_shipLine, ShipLineField::CockpitScene));
    m_shipSceneFound = false;
    m_cockpitSceneFound = false;
    m_notFound.clear();
    m_texts.clear();
    m_shipName.clear();
    m_textsRead = false;

    OfferEntries();
    FillCockpitLists();
    m_dummies = CheckTree(m_dummySections);
    m_components = CheckTree(m_componentSections);

    const std::pair<QString, bool> scenes[] = {{m_shipScene, m_shipSceneFound},
                                               {m_cockpitScene, m_cockpitSceneFound}};
    for (const auto& [scene, found] : scenes) {
        if (found)
            MatchScene(scene);
        else
            NoteNotFound(scene);
    }
    for (const QString& body : GunBodyNames(m_shipLine))
        MatchPart(body, body);

    // The scenes of the cockpits the turrets use are part of the ship too.
    QStringList cockpitScenes;
    for (const QString& line : std::as_const(m_cockpitLines)) {
        const QString scene = CockpitSceneId(line);
        if (m_cockpits.Chosen().contains(ShipLineId(line)) && ReadInt(scene) == 0 && !scene.isEmpty())
            cockpitScenes.append(scene);
    }
    FollowScenes({}, cockpitScenes);
}

void ImportSession::OfferEntries()
{
    m_models.Clear();
    m_textures.Clear();
    const QString shipKey = m_shipScene.toLower();
    const QString cockpitKey = m_cockpitScene.toLower();
    QStringList models;
    QStringList textures;
    for (const QString& entry : std::as_const(m_entries)) {
        bool isScene = false;
        if (!shipKey.isEmpty() || !cockpitKey.isEmpty()) {
            const QString name = SceneComparisonName(entry);
            // The catalog gives each scene its extension, once.
            if (!m_shipSceneFound && !shipKey.isEmpty() && name == shipKey) {
                m_shipScene += u'.' + Extension(entry);
                m_shipSceneFound = isScene = true;
            }
            if (!m_cockpitSceneFound && !cockpitKey.isEmpty() && name == cockpitKey) {
                m_cockpitScene += u'.' + Extension(entry);
                m_cockpitSceneFound = isScene = true;
            }
        }
        if (!isScene && IsObjectEntry(entry))
            models.append(entry);
        if (m_hasTextures && IsTextureEntry(entry))
            textures.append(entry);
    }
    m_models.SetAvailable(models);
    m_textures.SetAvailable(textures);
}

void ImportSession::MatchScene(const QString& scene)
{
    MatchBodies(ReadSceneEntry(scene, false), nullptr);
}

QStringList ImportSession::ReadSceneEntry(const QString& entry, bool requireVersion)
{
    const QString work = WorkDir() + "/scene.txt";
    if (!GameFileExtract(m_setup.Catalog + "::" + entry, work, false, false)) {
        QFile::remove(work);
        NoteNotFound(WithForwardSlashes(entry));
        return {};
    }
    const QStringList bodies =
        ReadSceneBodyNames(work, requireVersion ? SceneCheck::RequireVersion : SceneCheck::AnyText);
    QFile::remove(work);
    return bodies;
}

void ImportSession::MatchBodies(const QStringList& bodies, QList<CheckPlace>* newDummies)
{
    for (const QString& body : bodies) {
        const PartMatch match = MatchPartOnce(BodyModelName(body), body);
        if (newDummies && match.NewDummy.IsValid())
            newDummies->append(match.NewDummy);
    }
}

void ImportSession::MatchPart(const QString& modelName, const QString& partName)
{
    MatchPartOnce(modelName, partName);
}

QStringList ImportSession::ModelCandidates(const QString& modelName) const
{
    return m_modelsByShortName.value(ShortKey(modelName));
}

ImportSession::PartMatch ImportSession::MatchPartOnce(const QString& modelName, const QString& partName)
{
    PartMatch match;
    if (modelName.isEmpty() && partName.isEmpty())
        return match;
    const QStringList candidates = ModelCandidates(modelName);
    match.MovedModels = m_models.ChooseEntries(candidates, false);

    const CheckPlace dummy = m_dummies.FirstMatch(partName);
    if (dummy.IsValid() && !m_dummies.IsTicked(dummy)) {
        m_dummies.SetTicked(dummy, true);
        match.NewDummy = dummy;
    }
    const CheckPlace component = m_components.FirstMatch(partName);
    m_components.SetTicked(component, true);

    if (candidates.isEmpty() && !dummy.IsValid() && !component.IsValid())
        NoteNotFound(partName);
    return match;
}

void ImportSession::FillCockpitLists()
{
    m_cockpits.Clear();
    for (const QString& line : std::as_const(m_cockpitLines)) {
        const QString name = ShipLineId(line);
        if (!name.isEmpty())
            m_cockpits.Offer(name);
    }
    for (int slot = 0; slot < TurretSlotCount; ++slot) {
        const int index = ShipFieldInt(m_shipLine, TurretCockpitField(slot));
        // 0 is no cockpit; a number beyond the table names none either.
        if (index <= 0 || index >= m_cockpitLines.size())
            continue;
        const QString name = ShipLineId(m_cockpitLines[index]);
        if (!name.isEmpty())
            m_cockpits.ChooseDirectly(name);
    }
    m_cockpits.RemoveChosenFromAvailable();
}

void ImportSession::CollectDummyModels()
{
    FollowScenes(m_dummies.Ticked(), {});
}

// Follows ticked dummy rows, and the scenes in `scenes`, breadth first. Each
// row is followed once; a scene is read only when its model entry moves to
// the chosen models, which happens once, so a circle of scenes ends. Rows
// ticked by a scene at depth MaxSceneDepth are not followed further.
void ImportSession::FollowScenes(QList<CheckPlace> rows, const QStringList& scenes)
{
    struct Pending
    {
        CheckPlace Row;
        QString Scene; // a scene named directly, when Row is not valid
        int Depth = 0;
    };
    QList<Pending> queue;
    for (const CheckPlace& row : rows)
        queue.append({row, {}, 0});
    for (const QString& scene : scenes)
        queue.append({{}, scene, 0});

    QList<CheckPlace> followed;
    while (!queue.isEmpty()) {
        const Pending pending = queue.takeFirst();
        QStringList names;
        if (pending.Row.IsValid()) {
            if (followed.contains(pending.Row))
                continue;
            followed.append(pending.Row);
            // The fields from the fifth on name models and scenes.
            names = m_dummies.Row(pending.Row).Text.split(u';').mid(4);
        } else {
            names = {pending.Scene};
        }
        for (const QString& name : std::as_const(names)) {
            const QStringList moved = m_models.ChooseEntries(ModelCandidates(name.trimmed()), true);
            if (moved.isEmpty())
                continue;
            const QString extension = Extension(moved.first()).toLower();
            if (extension != QLatin1String("pbd") && extension != QLatin1String("bod"))
                continue;
            if (pending.Depth >= MaxSceneDepth) {
                NoteNotFound(WithForwardSlashes(moved.first()));
                continue;
            }
            QList<CheckPlace> ticked;
            MatchBodies(ReadSceneEntry(moved.first(), true), &ticked);
            for (const CheckPlace& row : std::as_const(ticked))
                queue.append({row, {}, pending.Depth + 1});
        }
    }
}

void ImportSession::ScanModelTextures(const QString& x2bcPath)
{
    const TextureScanSetup setup{m_setup.Catalog, WorkDir(), x2bcPath};
    for (const QString& name : ::ScanModelTextures(setup, m_models.Chosen())) {
        for (const QString& texture : m_textures.Available()) {
            if (EntryFileName(texture).toLower() == name) {
                m_textures.ChooseEntries({texture}, true);
                break;
            }
        }
    }
}

void ImportSession::AddTextRow(const QString& sourceName, const QString& path, QString* name44,
                               QString* firstName)
{
    GameTextHandler handler(nullptr, nullptr, nullptr, ShipFieldInt(m_shipLine, ShipLineField::NameId),
                            nullptr, nullptr);
    ParseGameTextFile(path, handler);
    if (handler.Name().isEmpty())
        return;
    const QString fileName = EntryFileName(sourceName);
    m_texts.append({fileName.left(2), handler.Name(), handler.Description()});
    if (fileName.startsWith(QLatin1String("44")))
        *name44 = handler.Name();
    else if (firstName->isEmpty())
        *firstName = handler.Name();
}

void ImportSession::ReadShipTexts()
{
    m_texts.clear();
    QString name44;
    QString firstName;
    const QString work = WorkDir() + "/textfile.txt";
    for (const QString& entry : std::as_const(m_entries)) {
        if (!IsLanguageEntry(entry))
            continue;
        if (GameFileExtract(m_setup.Catalog + "::" + entry, work, false, false))
            AddTextRow(entry, work, &name44, &firstName);
        QFile::remove(work);
    }
    m_shipName = name44.isEmpty() ? firstName : name44;
    m_textsRead = true;
}

bool ImportSession::ImportTextFiles(const QStringList& files)
{
    const qsizetype before = m_texts.size();
    QString name44;
    QString firstName;
    const QString unpacked = WorkDir() + "/text.xml";
    for (const QString& file : files) {
        if (QFileInfo(file).suffix().compare(QLatin1String("pck"), Qt::CaseInsensitive) != 0) {
            AddTextRow(file, file, &name44, &firstName);
            continue;
        }
        // Unpacked into the work directory, never beside the user's file.
        PckFileToPlain(file, unpacked);
        AddTextRow(file, unpacked, &name44, &firstName);
        QFile::remove(unpacked);
    }
    if (m_shipName.isEmpty())
        m_shipName = name44.isEmpty() ? firstName : name44;
    return m_texts.size() > before;
}

void ImportSession::NoteNotFound(const QString& what)
{
    if (!what.isEmpty() && !m_notFound.contains(what))
        m_notFound.append(what);
}

QString ImportSession::ExtractToShipInstall(const QString& entry) const
{
    const QString name = UnpackedName(WithForwardSlashes(entry));
    if (!IsContainedEntryName(name))
        return {};
    const QString shipInstall = m_setup.ProgramDir + "/ShipInstall";
    const QString target = shipInstall + u'/' + name;
    if (!QDir().mkpath(QFileInfo(target).absolutePath()))
        return {};
    if (!GameFileExtract(m_setup.Catalog + "::" + entry, target, false, false))
        return {};
    return QLatin1String(PackagePathMarker) + name;
}

ImportResult ImportSession::Finish() const
{
    ImportResult result;
    result.ShipLine = m_shipLine;
    result.ShipId = ShipLineId(m_shipLine);
    result.ShipName = m_shipName;
    result.ShipSceneField = ShipField(m_shipLine, ShipLineField::ShipScene);
    result.CockpitSceneField = ShipField(m_shipLine, ShipLineField::CockpitScene);
    if (m_shipSceneFound) {
        result.ShipSceneEntry = m_shipScene;
        result.ShipSceneFile = ExtractToShipInstall(m_shipScene);
    }
    if (m_cockpitSceneFound) {
        result.CockpitSceneEntry = m_cockpitScene;
        result.CockpitSceneFile = ExtractToShipInstall(m_cockpitScene);
    }

    if (m_hasCockpits) {
        for (int index = 0; index < m_cockpitLines.size(); ++index) {
            const QString& line = m_cockpitLines[index];
            const QString name = ShipLineId(line);
            if (!name.isEmpty() && m_cockpits.Chosen().contains(name))
                result.Cockpits.append({name, index, line});
        }
    }

    auto unpackRows = [this](const QStringList& entries, QList<ImportedFile>& rows) {
        for (const QString& entry : entries) {
            const QString path = ExtractToShipInstall(entry);
            if (!path.isEmpty())
                rows.append({path, EntryDirectory(entry)});
        }
    };
    unpackRows(m_models.Chosen(), result.Models);
    unpackRows(m_textures.Chosen(), result.Textures);

    result.Texts = m_texts;

    for (const CheckPlace& place : m_dummies.Ticked())
        result.Dummies.append({m_dummies.Sections()[place.Section].Name, m_dummies.Row(place).Text});
    for (const CheckPlace& place : m_components.Ticked()) {
        const QString section = m_components.Sections()[place.Section].Name;
        const CheckRow& row = m_components.Row(place);
        auto same = [&](const ImportedComponent& group) {
            return group.Section == section && group.Id == row.Text;
        };
        auto found = std::find_if(result.Components.begin(), result.Components.end(), same);
        if (found == result.Components.end())
            result.Components.append({section, row.Text, row.Lines});
        else
            found->Lines += row.Lines;
    }
    return result;
}
