// A ship configuration dialog over the sample game: its tables, languages,
// cockpits and gun bodies, the way the opener loads them, with a scripted
// prompter and a private program directory.
#pragma once

#include "TestSupport.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"
#include "language/UiTexts.h"
#include "shipconfig/DConfigShip.h"
#include "shipconfig/GunBodies.h"

#include <QFile>
#include <QTextStream>

#include <memory>

namespace fixture {

inline QString SampleGame()
{
    return qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
}

inline bool HaveSampleGame()
{
    return QFile::exists(SampleGame() + "/01.cat");
}

inline QString SampleSource(const QString& relative)
{
    return qEnvironmentVariable("HW_SOURCE_DIR") + "/samples/game-src/" + relative;
}

inline QStringList ShipLines(const QString& tablePath)
{
    return ParseTypesText(QString::fromUtf8(ReadFile(tablePath))).records;
}

// The sample's ship with this id.
inline QString SampleShip(const QString& id)
{
    for (const QString& line : ShipLines(SampleSource("types/TShips.txt")))
        if (ShipLineId(line) == id)
            return line;
    return {};
}

// "<id>:<name>" lines of data/classes or data/variant.
inline QList<IdName> IdNames(const QString& name)
{
    QList<IdName> list;
    for (const QString& line :
         QString::fromUtf8(ReadFile(qEnvironmentVariable("HW_DATA_DIR") + "/data/" + name))
             .split('\n', Qt::SkipEmptyParts))
        if (!line.startsWith("//"))
            list.append({line.section(':', 0, 0).toInt(), line.section(':', 1).trimmed()});
    return list;
}

struct Dialog
{
    Dialog()
        : texts(PlaceholderUiTexts(UiTextCount)), classes(IdNames("classes")), variants(IdNames("variant"))
    {
    }

    // The dialog filled as the opener fills it; `scene` names a scene file.
    DConfigShip& open(const QString& line,
                      const QString& scene = SampleSource("objects/ships/sample/tidewall_scene.bod"))
    {
        dialog = std::make_unique<DConfigShip>(&texts, QStringList{SampleGame()}, "44", &variants, &classes,
                                               nullptr, &prompts);
        dialog->LoadShields();
        dialog->LoadLasers();
        dialog->LoadMissiles();
        dialog->LoadLanguagesAndCockpits();
        dialog->CustomCockpits = customCockpits;
        dialog->LoadScene(scene);
        for (const QString& gun : GameGunLines(SampleGame(), home.filePath("Dummies.txt")))
            dialog->AddGunBody(gun);
        dialog->LoadShipLine(line);
        return *dialog;
    }

    TempHome home;
    ScriptedPrompter prompts;
    QStringList texts;
    QList<IdName> classes;
    QList<IdName> variants;
    QStringList customCockpits;
    std::unique_ptr<DConfigShip> dialog;
};

} // namespace fixture
