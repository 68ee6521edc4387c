// The arithmetic of the ship configuration dialog, free of widgets.
//
// Every value is computed in 32-bit float with 32-bit constants, and numbers
// become text in the general format with six significant digits, so that the
// dialog shows and writes exactly what the game's own tools would.
//
//   speed and acceleration: 500 units of the line are 1 m/s
//   turning: the line holds turns per six seconds, shown as degrees per
//            second (field * 360 / 6); the dial holds ten times that
//   recharge: the line holds a share of the weapon energy per second
#pragma once

#include <QString>

#include <optional>

namespace ShipFormulas {

// Units of the line as m/s, as text.
QString MetresPerSecond(int units);

// Units from a text in m/s: the text as float * 500 + 0.5, cut.
int UnitsFromMetres(const QString& metres);

// The top speed with `extensions` speed extensions: each adds a tenth of the
// base speed, rounded to whole units.
struct TopSpeed
{
    int units = 0;
    QString metres;
};
TopSpeed TopSpeedOf(int minSpeed, int extensions);

// A turning axis: what the display box, the raw box and the dial show.
struct Turning
{
    QString shown; // degrees per second, one decimal
    QString raw;   // the line's value
    int dial = 0;
};

// From a dial position (tenths of a degree per second).
Turning TurningFromDial(int dial);
// From the line's field, before the dial is set: the raw box keeps the text.
Turning TurningFromField(const QString& field);

// Recharge per second in J from the line's share and the weapon energy, and back.
QString RechargePerSecond(const QString& share, int energy);
QString RechargeShare(const QString& perSecond, int energy);

// The notoriety that preset item `item` of the preset box stands for; item 0
// (the empty one) and items past the table stand for none.
std::optional<int> NotorietyPreset(int item);
inline constexpr int NotorietyPresetCount = 16;

// Which of the six rank tables race item `raceItem` uses (the first five
// races, then the ninth), or none.
std::optional<int> RankTableOfRace(int raceItem);

// The base name of a scene path: behind the last slash or backslash, up to
// the first dot.
QString SceneBaseOf(const QString& scenePath);

// The name a copied cockpit is offered under: "SS_COCKPIT_", the scene's base
// name without "_SCENE" (any case) and, when a turret is selected (its
// position text "<number>: <name>" given), "_" and the position's name; all in
// upper case.
QString CopiedCockpitName(const QString& sceneBase, const QString& turretPosition = QString());

} // namespace ShipFormulas
