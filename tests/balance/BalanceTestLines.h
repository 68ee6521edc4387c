// Ship lines and profiles for the balance tests.
#pragma once

#include "balance/BalanceProfile.h"
#include "gamedata/ShipLine.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <array>
#include <utility>

// A 65-field line with a final ";": every field "f<n>" (so that a copied field
// shows where it came from) except the numbers given.
inline QString ShipLineWith(const QList<QPair<int, QString>>& values)
{
    QStringList fields;
    for (int n = 0; n < 65; ++n)
        fields.append(QStringLiteral("f%1").arg(n));
    fields[ShipLineField::CockpitCount] = QStringLiteral("0");
    fields[54] = QStringLiteral("0"); // no gun groups
    for (const auto& [field, value] : values)
        fields[field] = value;
    return fields.join(u';') + u';';
}

// The Min/Max pairs of the properties a slider shows (shields aside).
inline std::array<std::pair<int32_t*, int32_t*>, 8> SliderRanges(BalanceProfile& p)
{
    return {{{&p.SpeedMin, &p.SpeedMax},
             {&p.AccelMin, &p.AccelMax},
             {&p.ReactorMin, &p.ReactorMax},
             {&p.WeaponMin, &p.WeaponMax},
             {&p.RechargeMin, &p.RechargeMax},
             {&p.CargoMin, &p.CargoMax},
             {&p.HullMin, &p.HullMax},
             {&p.TurnMin, &p.TurnMax}}};
}

// A profile whose every range is `min`..`max`; shields from one shield of
// type 0 to `maxCount` of type 1.
inline BalanceProfile UniformProfile(int min, int max, int maxCount = 4)
{
    BalanceProfile p;
    p.Profile = QStringLiteral("Uniform");
    p.Class = 0;
    for (auto [low, high] : SliderRanges(p)) {
        *low = min;
        *high = max;
    }
    p.ShieldMinType = 0;
    p.ShieldMaxType = 1;
    p.ShieldMaxCount = maxCount;
    return p;
}
