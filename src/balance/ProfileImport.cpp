#include "balance/ProfileImport.h"

#include "balance/BalanceMath.h"
#include "gamedata/ShipLine.h"

#include <algorithm>

namespace {

constexpr int32_t kStartMinimum = 99999999;
constexpr int32_t kStartTuningMinimum = 9990;

void Widen(int32_t value, int32_t& low, int32_t& high)
{
    low = std::min(low, value);
    high = std::max(high, value);
}

bool IsDummyShip(const QString& line)
{
    if (ShipField(line, ShipLineField::ShipScene) == u"0")
        return true;
    const int speed = ShipFieldInt(line, ShipLineField::Speed);
    if (speed == 0 || speed == 1)
        return true;
    if (ShipFieldInt(line, ShipLineField::CargoMin) <= 1)
        return true;
    return ReadFloat(ShipField(line, ShipLineField::RechargeRate)) == 0.0;
}

// Shields: the weakest fitting is the lowest type with its lowest count, the
// strongest the highest type with its highest count.
void WidenShields(const QString& line, BalanceProfile& p)
{
    const int32_t type = ShipFieldInt(line, ShipLineField::ShieldType);
    const int32_t count = ShipFieldInt(line, ShipLineField::ShieldCount);
    if (type < p.ShieldMinType) {
        p.ShieldMinType = type;
        p.ShieldMinCount = count;
    } else if (type == p.ShieldMinType) {
        p.ShieldMinCount = std::min(p.ShieldMinCount, count);
    }
    if (type > p.ShieldMaxType) {
        p.ShieldMaxType = type;
        p.ShieldMaxCount = count;
    } else if (type == p.ShieldMaxType) {
        p.ShieldMaxCount = std::max(p.ShieldMaxCount, count);
    }
}

} // namespace

std::optional<BalanceProfile> ImportProfileLimits(const QStringList& records, int shipClass, int variant,
                                                  const QList<int>& wantedVariants)
{
    BalanceProfile p;
    p.Class = shipClass;
    p.Variant = variant;
    for (int32_t* minimum : {&p.SpeedMin, &p.AccelMin, &p.CargoMin, &p.HullMin, &p.ReactorMin, &p.TurnMin,
                             &p.WeaponMin, &p.RechargeMin, &p.ShieldMinType, &p.ShieldMinCount})
        *minimum = kStartMinimum;
    p.TuningMin = kStartTuningMinimum;
    // The cargo floor's least and greatest value, until they become average and span.
    int32_t floorLow = kStartMinimum;
    int32_t floorHigh = 0;
    bool anyFloor = false;
    bool anyShip = false;

    for (const QString& line : records) {
        if (ShipFieldInt(line, ShipLineField::ShipClass) != shipClass)
            continue;
        const int variation = ShipFieldInt(line, ShipLineField::Variation);
        if (variant >= 0 ? variation != variant : !wantedVariants.contains(variation))
            continue;
        if (IsDummyShip(line))
            continue;
        anyShip = true;

        Widen(ShipFieldInt(line, ShipLineField::Speed), p.SpeedMin, p.SpeedMax);
        Widen(ShipFieldInt(line, ShipLineField::Acceleration), p.AccelMin, p.AccelMax);
        const int32_t cargo = ShipFieldInt(line, ShipLineField::CargoMax);
        const int32_t floor = ShipFieldInt(line, ShipLineField::CargoMin);
        Widen(cargo, p.CargoMin, p.CargoMax);
        if (floor <= cargo) {
            Widen(floor, floorLow, floorHigh);
            anyFloor = true;
        }
        Widen(ShipFieldInt(line, ShipLineField::Hull), p.HullMin, p.HullMax);
        Widen(ShipFieldInt(line, ShipLineField::ReactorOutput), p.ReactorMin, p.ReactorMax);
        Widen(ShipFieldInt(line, ShipLineField::SpeedExtensions), p.TuningMin, p.TuningMax);
        const float pitch = static_cast<float>(ReadFloat(ShipField(line, ShipLineField::Pitch)));
        Widen(BalanceMath::TruncToInt32(pitch * 6000.0f), p.TurnMin, p.TurnMax);
        const int32_t energy = ShipFieldInt(line, ShipLineField::WeaponEnergy);
        Widen(energy, p.WeaponMin, p.WeaponMax);
        const float rate = static_cast<float>(ReadFloat(ShipField(line, ShipLineField::RechargeRate)));
        Widen(BalanceMath::TruncToInt32(float(energy) * rate), p.RechargeMin, p.RechargeMax);
        WidenShields(line, p);
    }
    if (!anyShip)
        return std::nullopt;
    if (anyFloor) {
        const int64_t average = floorLow + (int64_t(floorHigh) - floorLow) / 2;
        p.CargoAvg = BalanceMath::ClampToInt32(average);
        p.CargoDiff = BalanceMath::ClampToInt32(average - floorLow);
    }
    return p;
}

QString ClassCode(int shipClass)
{
    static const char* const codes[] = {"TL", "TS", "M0", "M1", "M2", "M3", "M4",
                                        "M5", "TL", "TS", "GO", "M6", "TP"};
    if (shipClass < 0 || shipClass >= int(std::size(codes)))
        return {};
    return QLatin1String(codes[shipClass]);
}
