#include "shipconfig/ShipFormulas.h"

#include "gamedata/ShipLine.h"

#include <array>

namespace ShipFormulas {

namespace {

constexpr float MetresPerUnit = 0.002f;
constexpr float UnitsPerMetre = 500.0f;
constexpr float Tenth = 0.1f;
constexpr float Half = 0.5f;
constexpr float FullTurn = 360.0f;
constexpr float SixSeconds = 6.0f;
constexpr float OneSixth = 1.0f / 6.0f;
constexpr float OneFullTurn = 1.0f / 360.0f;
constexpr float DialSteps = 10.0f;

float ReadFloat32(const QString& text)
{
    bool ok = false;
    const float value = text.trimmed().toFloat(&ok);
    return ok ? value : 0.0f;
}

QString Text(float value)
{
    return FormatFloat(double(value));
}

// A float cut to an int, held inside the int's range.
int Cut(float value)
{
    if (!(value > -2147483520.0f)) // also NaN
        return value > 0 ? 2147483647 : -2147483647 - 1;
    if (value >= 2147483520.0f)
        return 2147483647;
    return int(value);
}

} // namespace

QString MetresPerSecond(int units)
{
    return Text(float(units) * MetresPerUnit);
}

int UnitsFromMetres(const QString& metres)
{
    return Cut(ReadFloat32(metres) * UnitsPerMetre + Half);
}

TopSpeed TopSpeedOf(int minSpeed, int extensions)
{
    const float base = float(minSpeed);
    const float extra = base * float(extensions) * Tenth + Half;
    const float top = base + extra;
    return {Cut(top), Text(top * MetresPerUnit)};
}

Turning TurningFromDial(int dial)
{
    const float shown = float(dial) * Tenth;
    return {QString::asprintf("%.1f", double(shown)), Text(shown * SixSeconds * OneFullTurn), dial};
}

Turning TurningFromField(const QString& field)
{
    const float shown = ReadFloat32(field) * FullTurn * OneSixth;
    return {QString::asprintf("%.1f", double(shown)), field, Cut(shown * DialSteps)};
}

QString RechargePerSecond(const QString& share, int energy)
{
    return Text(ReadFloat32(share) * float(energy));
}

QString RechargeShare(const QString& perSecond, int energy)
{
    return Text(ReadFloat32(perSecond) / float(energy));
}

std::optional<int> NotorietyPreset(int item)
{
    static constexpr std::array<int, NotorietyPresetCount> Presets = {
        333333, 100000, 33333, 10000, 3333, 1000, 333, 100, 33, 10, 0, -11, -101, -1001, -10001, -100001};
    if (item < 1 || item > NotorietyPresetCount)
        return std::nullopt;
    return Presets[item - 1];
}

std::optional<int> RankTableOfRace(int raceItem)
{
    constexpr int FirstRaces = 5;
    constexpr int NinthRaceItem = 8;
    if (raceItem >= 0 && raceItem < FirstRaces)
        return raceItem;
    if (raceItem == NinthRaceItem)
        return FirstRaces;
    return std::nullopt;
}

QString SceneBaseOf(const QString& scenePath)
{
    const qsizetype slash = std::max(scenePath.lastIndexOf(u'/'), scenePath.lastIndexOf(u'\\'));
    const QString name = scenePath.mid(slash + 1);
    return name.left(name.indexOf(u'.')); // the whole name when it has no dot
}

QString CopiedCockpitName(const QString& sceneBase, const QString& turretPosition)
{
    QString name = "SS_COCKPIT_" + QString(sceneBase).remove(QLatin1String("_SCENE"), Qt::CaseInsensitive);
    if (!turretPosition.isEmpty())
        name += "_" + turretPosition.section(u':', 1).trimmed();
    return name.toUpper();
}

} // namespace ShipFormulas
