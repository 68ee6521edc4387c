// Limits of a balance profile taken from the ships of a TShips table.
#pragma once

#include "balance/BalanceProfile.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// The limits that the ships of `shipClass` span among the table's `records`
// (the data lines, header and comments taken out). With `variant` 0 or more
// only ships of that variation count; with -1 those whose variation is among
// `wantedVariants`. Dummy ships do not count: no scene (field 16 "0"), a
// speed of 0 or 1, a cargo floor of 1 or less, or no recharge rate.
//
// Each limit is the least and the greatest value of the ships: speed,
// acceleration, cargo, hull, reactor, weapon energy, tunings (the speed
// extensions), turning (pitch x 6000) and recharge (energy x rate), the last
// two truncated. The cargo floor counts only for ships whose floor is not
// above their cargo; CargoAvg is the middle of the floors and CargoDiff the
// span from the lowest to it (both 0 when no floor counted). The shields run
// from the weakest fitting (lowest type, and its lowest count) to the
// strongest (highest type, and its highest count).
//
// The result carries `shipClass` and `variant`, no name and no file name;
// nothing when no ship counted.
std::optional<BalanceProfile> ImportProfileLimits(const QStringList& records, int shipClass, int variant,
                                                  const QList<int>& wantedVariants);

// The short code of a ship class in the profile list: TL, TS, M0 ... M6, GO,
// TP; the classes 8 and 9 read as 0 and 1. Empty for any other class.
QString ClassCode(int shipClass);
