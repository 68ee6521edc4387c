#include "balance/BalanceModel.h"

#include "balance/BalanceMath.h"
#include "gamedata/ShipLine.h"

#include <QStringList>

#include <algorithm>
#include <limits>

using BalanceMath::ClampToInt32;
using BalanceMath::Finite;
using BalanceMath::TruncToInt64;

namespace {

constexpr float kNinth = 0.11111111f;
constexpr float kTurnUnit = 0.00016666666f; // 1/6000: the pitch field is the turning value in 1/6000
constexpr int kTurnScale = 6000;
constexpr int kTarget = 100;

QString Number(int64_t value)
{
    return QString::number(value);
}

QString Float(double value)
{
    return FormatFloat(Finite(value));
}

QString Percent(double fraction)
{
    return Number(TruncToInt64(fraction * 100.0)) + u'%';
}

} // namespace

namespace {

// The fields of a line, cut once; a field behind the end is empty.
class LineFields
{
public:
    explicit LineFields(const QString& line) : m_fields(line.split(u';')) {}
    QString Text(int field) const { return m_fields.value(field); }
    int Int(int field) const { return ReadInt(m_fields.value(field)); }
    float Float(int field) const { return static_cast<float>(ReadFloat(m_fields.value(field))); }
    const QStringList& All() const { return m_fields; }

private:
    QStringList m_fields;
};

int64_t BalanceValue(const LineFields& line, int index)
{
    switch (index) {
    case BalanceIndex::Speed:
        return line.Int(ShipLineField::Speed);
    case BalanceIndex::Accel:
        return line.Int(ShipLineField::Acceleration);
    case BalanceIndex::Reactor:
        return line.Int(ShipLineField::ReactorOutput);
    case BalanceIndex::Weapons:
        return line.Int(ShipLineField::WeaponEnergy);
    case BalanceIndex::Recharge:
        // The recharge total: the rate (a share of the energy per second) times the energy.
        return TruncToInt64(line.Float(ShipLineField::RechargeRate) *
                            static_cast<float>(line.Int(ShipLineField::WeaponEnergy)));
    case BalanceIndex::Cargo:
        return line.Int(ShipLineField::CargoMax);
    case BalanceIndex::Hull:
        return line.Int(ShipLineField::Hull);
    case BalanceIndex::Turning:
        return TruncToInt64(line.Float(ShipLineField::Pitch) * static_cast<float>(kTurnScale));
    default:
        return 0;
    }
}

} // namespace

int64_t ShipBalanceValue(const QString& line, int index)
{
    return BalanceValue(LineFields(line), index);
}

std::array<int64_t, 8> ShipBalanceValues(const QString& line)
{
    const LineFields fields(line);
    std::array<int64_t, 8> values{};
    for (int index = 0; index < BalanceIndex::Count; ++index)
        values[index] = BalanceValue(fields, index);
    return values;
}

BalanceModel::BalanceModel(const BalanceProfile& profile)
    : m_profile(profile), m_limits{MakeLimits(profile.SpeedMin, profile.SpeedMax, 10),
                                   MakeLimits(profile.AccelMin, profile.AccelMax, 10),
                                   MakeLimits(profile.ReactorMin, profile.ReactorMax, 1),
                                   MakeLimits(profile.WeaponMin, profile.WeaponMax, 10),
                                   MakeLimits(profile.RechargeMin, profile.RechargeMax, 1),
                                   MakeLimits(profile.CargoMin, profile.CargoMax, 1),
                                   MakeLimits(profile.HullMin, profile.HullMax, 10),
                                   MakeLimits(profile.TurnMin, profile.TurnMax, 1)},
      m_shields(profile.ShieldMinType, profile.ShieldMaxType, profile.ShieldMaxCount)
{
    m_shieldPosition = std::min<int32_t>(1, m_shields.Steps());
    UpdateDisplay();
}

BalanceModel::Limits BalanceModel::MakeLimits(int32_t min, int32_t max, int32_t lineStep)
{
    Limits limits;
    limits.min = min;
    limits.max = max;
    limits.lineStep = lineStep;
    limits.top = ClampToInt32(std::max<int64_t>(0, int64_t(max) - min));
    limits.mid = min + (int64_t(max) - min) / 2;
    // 1% of the top, in whole line steps, at least 1.
    int64_t step = TruncToInt64(float(limits.top) * 0.01f);
    step = step / lineStep * lineStep;
    limits.step = ClampToInt32(std::max<int64_t>(1, step));
    return limits;
}

int32_t BalanceModel::Top(int index) const
{
    return LimitsOf(index).top;
}

int32_t BalanceModel::LineStep(int index) const
{
    return LimitsOf(index).lineStep;
}

void BalanceModel::SetPosition(int index, int64_t value)
{
    if (index < 0 || index >= BalanceIndex::Count)
        return;
    m_sliders[index].Value = static_cast<int32_t>(std::clamp<int64_t>(value, 0, Top(index)));
}

void BalanceModel::SetShieldPosition(int64_t position)
{
    const int32_t steps = m_shields.Steps();
    m_shieldPosition = steps < 1 ? 0 : static_cast<int32_t>(std::clamp<int64_t>(position, 1, steps));
}

void BalanceModel::LoadFromShipLine(const QString& line)
{
    for (int index = 0; index < BalanceIndex::Count; ++index)
        SetPosition(index, ShipBalanceValue(line, index) - Bottom(index));
    const std::optional<int32_t> shield = m_shields.PositionOf(
        ShipFieldInt(line, ShipLineField::ShieldType), ShipFieldInt(line, ShipLineField::ShieldCount));
    if (shield)
        m_shieldPosition = *shield;
    UpdateDisplay();
}

double BalanceModel::PropertyFraction(int index, int64_t value) const
{
    if (index < 0 || index >= BalanceIndex::Count)
        return 1.0;
    const Limits& limits = LimitsOf(index);
    if (limits.max <= limits.min || limits.mid == 0)
        return 1.0; // no travel, or no middle to compare with: the property sits at the centre
    const int64_t at = value < 0 ? m_sliders[index].Value : value;
    return double(limits.min + at) / double(limits.mid);
}

double BalanceModel::ShieldFraction(int64_t value) const
{
    const int32_t steps = m_shields.Steps();
    if (steps < 1)
        return 1.0;
    const int64_t at = value < 0 ? m_shieldPosition : value;
    return double(at) / (steps * 0.5);
}

int BalanceModel::AverageNow() const
{
    // The running sum is held in single precision, as the shown average has
    // always been worked out.
    float sum = 0.0f;
    for (const int index : {BalanceIndex::Speed, BalanceIndex::Accel, BalanceIndex::Reactor,
                            BalanceIndex::Weapons, BalanceIndex::Recharge}) {
        sum += static_cast<float>(PropertyFraction(index));
    }
    sum += static_cast<float>(ShieldFraction());
    for (const int index : {BalanceIndex::Hull, BalanceIndex::Cargo, BalanceIndex::Turning})
        sum += static_cast<float>(PropertyFraction(index));
    const float mean = sum * kNinth * 100.0f;
    return BalanceMath::TruncToInt32(mean);
}

std::optional<ShieldPair> BalanceModel::ShieldPairNow() const
{
    return m_shields.PairAt(m_shieldPosition);
}

int64_t BalanceModel::Tunings() const
{
    const int64_t tuningMin = m_profile.TuningMin;
    const int64_t range = int64_t(m_profile.TuningMax) - m_profile.TuningMin;
    const int64_t top = Top(BalanceIndex::Speed);
    const int64_t value = m_sliders[BalanceIndex::Speed].Value;
    if (range == 0 || top == 0)
        return tuningMin;
    // The tunings go up in even steps along the speed slider: one more each
    // top / range of speed. A speed range shorter than the tuning range has
    // no whole steps; there the tunings follow the speed in proportion.
    const int64_t stride = top / range;
    if (stride != 0)
        return tuningMin + value / stride;
    return tuningMin + TruncToInt64(double(value) * double(range) / double(top));
}

QString BalanceModel::CargoFloorText() const
{
    const int64_t cargo = ValueOf(BalanceIndex::Cargo);
    const int64_t share =
        m_profile.CargoMax == 0 ? 0 : TruncToInt64(double(cargo) / double(m_profile.CargoMax) * 100.0);
    if (share == 50)
        return Number(m_profile.CargoAvg);
    const int64_t low = int64_t(m_profile.CargoAvg) - m_profile.CargoDiff;
    const int64_t high = int64_t(m_profile.CargoAvg) + m_profile.CargoDiff;
    const int64_t top = Top(BalanceIndex::Cargo);
    if (top == 0)
        return Number(low);
    const double along = double(m_sliders[BalanceIndex::Cargo].Value) / double(top);
    return Number(TruncToInt64(along * double(high - low)) + low);
}

const BalanceDisplay& BalanceModel::UpdateDisplay()
{
    BalanceDisplay& d = m_display;
    d.average = AverageNow();
    for (int index = 0; index < BalanceIndex::Count; ++index)
        d.percent[index] = Percent(PropertyFraction(index));
    d.shieldPercent = Percent(ShieldFraction());

    if (const std::optional<ShieldPair> pair = ShieldPairNow()) {
        const int64_t megajoules = ShieldSize(pair->type) / 1000;
        d.shieldType = megajoules < 1000 ? Number(megajoules) + QStringLiteral("MJ")
                                         : Number(megajoules / 1000) + QStringLiteral("GJ");
        d.shieldAmount = Number(pair->count);
    } else {
        d.shieldType.clear();
        d.shieldAmount.clear();
    }

    const int64_t speed = ValueOf(BalanceIndex::Speed);
    const int64_t tunings = Tunings();
    d.tuning = Number(tunings);
    d.speedMin = Float(double(speed) * 0.002);
    const float withTunings = float(speed) + float(speed) * float(tunings) * 0.1f + 0.5f;
    d.speedMax = Float(double(withTunings) * 0.002);

    d.reactor = Number(ValueOf(BalanceIndex::Reactor));
    d.weapons = Number(ValueOf(BalanceIndex::Weapons));
    d.recharge = Number(ValueOf(BalanceIndex::Recharge));
    d.hull = Number(ValueOf(BalanceIndex::Hull));

    const double turning = double(ValueOf(BalanceIndex::Turning)) * 0.01;
    d.pitch = Float(turning);
    d.roll = d.pitch;
    d.yaw = Float(turning * 0.25 + turning);

    d.cargoMax = Number(ValueOf(BalanceIndex::Cargo));
    d.cargoMin = CargoFloorText();
    return d;
}

void BalanceModel::SetAverage()
{
    for (int index = 0; index < BalanceIndex::Count; ++index)
        SetPosition(index, Top(index) / 2);
    SetShieldPosition(m_shields.Steps() / 2);
    UpdateDisplay();
}

int32_t BalanceModel::AutoStep(int index) const
{
    return LimitsOf(index).step;
}

int64_t BalanceModel::StepBound() const
{
    // Moves: a slider goes one way only during a run, so it moves at most
    // top / step times (rounded up). Every slider can be set aside once. A
    // round that moves nothing is followed by one that does (see AutoBalance).
    int64_t moves = 0;
    for (int index = 0; index < BalanceIndex::Count; ++index) {
        const int64_t step = AutoStep(index);
        moves += (Top(index) + step - 1) / step + 1;
    }
    return 2 * moves + 1;
}

bool BalanceModel::AtEnd(int index, bool raise) const
{
    const int32_t value = m_sliders[index].Value;
    return raise ? value >= Top(index) : value <= 0;
}

double BalanceModel::Ratio(int index) const
{
    // Top / value: low for a slider far along its range. A slider at 0 has
    // no finite ratio; it compares above every other.
    const int32_t value = m_sliders[index].Value;
    return value == 0 ? std::numeric_limits<double>::infinity() : double(Top(index)) / double(value);
}

bool BalanceModel::AnyCanMove(int changed, bool raise, uint8_t coarse) const
{
    for (int index = 0; index < BalanceIndex::Count; ++index)
        if (index != changed && !(coarse & (1u << index)) && !AtEnd(index, raise))
            return true;
    return false;
}

int BalanceModel::PickEqual(int changed, bool raise, uint8_t coarse)
{
    // Each slider moves once before any moves again: a moved slider is
    // touched, and a slider that cannot move counts as touched too. The
    // slider the user moved stays touched throughout.
    if (changed >= 0)
        m_sliders[changed].Touched = true;
    int best = -1;
    double bestRatio = 0.0;
    for (int index = 0; index < BalanceIndex::Count; ++index) {
        BalanceSlider& slider = m_sliders[index];
        if (slider.Touched || AtEnd(index, raise) || (coarse & (1u << index))) {
            slider.Touched = true;
            continue;
        }
        const double ratio = Ratio(index);
        if (best < 0 || (raise ? ratio < bestRatio : ratio > bestRatio)) {
            best = index;
            bestRatio = ratio;
        }
    }
    return best;
}

int BalanceModel::PickExtreme(int changed, bool raise, bool lowest, uint8_t coarse, int& last) const
{
    // One slider is run to its end before another is chosen.
    if (last >= 0 && !AtEnd(last, raise) && !(coarse & (1u << last)))
        return last;
    int best = -1;
    double bestRatio = 0.0;
    for (int index = 0; index < BalanceIndex::Count; ++index) {
        if (index == changed || AtEnd(index, raise) || (coarse & (1u << index)))
            continue;
        const double ratio = Ratio(index);
        // Lowest: the highest ratio, nearest its bottom; Highest: the lowest ratio.
        if (best < 0 || (lowest ? ratio > bestRatio : ratio < bestRatio)) {
            best = index;
            bestRatio = ratio;
        }
    }
    last = best;
    return best;
}

void BalanceModel::ReleaseIfAllTouched()
{
    if (std::all_of(m_sliders.begin(), m_sliders.end(), [](const BalanceSlider& s) { return s.Touched; }))
        for (BalanceSlider& slider : m_sliders)
            slider.Touched = false;
}

// The loop moves one slider a step at a time toward an average of 100 and
// always ends. Its stopping rule:
//   - the average is 100: balanced;
//   - no slider but the user's may move in the direction the average needs
//     (every one stands at that end, or has been set aside): nothing can move;
//   - a step that would carry the average past 100 without landing on it is
//     taken back, and that slider is set aside for the rest of the run, since
//     even its smallest step is too coarse to land on 100.
// So the average never crosses 100 during a run and every slider moves one
// way only: it reaches its end within top / step moves. Every slider is set
// aside at most once. A round of the Equal mode that picks nothing has marked
// every slider touched, so all are released and the next round moves one.
// That bounds the rounds by StepBound(); the bound is checked as a safety net
// and its stop is reported, never a silent endless loop.
BalanceRun BalanceModel::AutoBalance(int changed, BalanceMode mode)
{
    if (changed < 0 || changed >= BalanceIndex::Count)
        changed = -1;
    BalanceRun run;
    int current = m_display.average;
    if (current == kTarget) {
        run.average = current;
        return run;
    }
    const int64_t bound = StepBound();
    int last = -1;
    run.stop = BalanceStop::Balanced;
    while (current != kTarget) {
        const bool raise = current < kTarget;
        if (!AnyCanMove(changed, raise, run.coarse)) {
            run.stop = BalanceStop::NothingCanMove;
            break;
        }
        if (run.steps >= bound) {
            run.stop = BalanceStop::StepLimit;
            break;
        }
        ++run.steps;
        const int target = mode == BalanceMode::Equal
                               ? PickEqual(changed, raise, run.coarse)
                               : PickExtreme(changed, raise, mode == BalanceMode::Lowest, run.coarse, last);
        if (target >= 0) {
            BalanceSlider& slider = m_sliders[target];
            const int32_t before = slider.Value;
            const int64_t step = AutoStep(target);
            const int64_t moved = raise ? int64_t(before) + step : int64_t(before) - step;
            if (moved <= 0 || moved >= Top(target))
                last = -1;
            SetPosition(target, moved);
            slider.Touched = true;
            const int next = AverageNow();
            if (next != kTarget && (next < kTarget) != raise) {
                slider.Value = before; // the step jumped past 100
                run.coarse |= uint8_t(1u << target);
                last = -1;
            } else {
                current = next;
            }
        }
        ReleaseIfAllTouched();
    }
    UpdateDisplay();
    run.average = m_display.average;
    return run;
}

QString BalanceModel::ApplyToShipLine(const QString& line)
{
    UpdateDisplay();
    const LineFields original(line);
    QStringList fields;
    fields.reserve(ShipLineField::Hull + 1);
    for (int field = 0; field <= ShipLineField::Hull; ++field)
        fields.append(original.Text(field));

    // Turning: pitch and roll in 1/6000, yaw a quarter above them.
    const int64_t turn = ValueOf(BalanceIndex::Turning);
    fields[ShipLineField::Yaw] = Float(double(turn + turn / 4) * double(kTurnUnit));
    const float pitch = float(turn) * kTurnUnit;
    fields[ShipLineField::Pitch] = Float(pitch);
    fields[ShipLineField::Roll] = Float(pitch);

    fields[ShipLineField::Speed] = Number(ValueOf(BalanceIndex::Speed));
    fields[ShipLineField::Acceleration] = Number(ValueOf(BalanceIndex::Accel));
    fields[ShipLineField::ReactorOutput] = Number(ValueOf(BalanceIndex::Reactor));

    const int64_t energy = ValueOf(BalanceIndex::Weapons);
    const int64_t recharge = ValueOf(BalanceIndex::Recharge);
    fields[ShipLineField::WeaponEnergy] = Number(energy);
    fields[ShipLineField::RechargeRate] =
        energy == 0 ? QStringLiteral("0") : Float(double(recharge) / energy);

    if (const std::optional<ShieldPair> pair = ShieldPairNow()) {
        fields[ShipLineField::ShieldType] = Number(pair->type);
        fields[ShipLineField::ShieldCount] = Number(pair->count);
    }

    // One tuning count for both speed and rudder.
    fields[ShipLineField::SpeedExtensions] = m_display.tuning;
    fields[ShipLineField::RudderExtensions] = m_display.tuning;
    fields[ShipLineField::CargoMin] = m_display.cargoMin;
    fields[ShipLineField::CargoMax] = Number(ValueOf(BalanceIndex::Cargo));
    fields[ShipLineField::Hull] = Number(ValueOf(BalanceIndex::Hull));

    // Everything behind the hull as it stands, with its own separators.
    return fields.join(u';') + u';' + original.All().mid(ShipLineField::Hull + 1).join(u';');
}
