// The balance model: a ship valued against a balance profile, free of widgets.
//
// Eight properties of the ship line are movable sliders between the profile's
// limits; a ninth, the shields, is a position on the shield scale. Each
// slider runs from 0 to Max - Min of its limits, so its value is the
// property's distance from the bottom of the profile. A property's fraction
// is (Min + value) / mid, mid being Min + (Max - Min) / 2 (integer division):
// 1.0 is the middle of the range. The ship's average is the mean of the nine
// fractions in percent; a ship of 100 is a ship of the profile's centre.
//
// Where a formula would divide by zero, the result is defined:
//   - a property whose range is empty or reversed (Max <= Min), or whose mid
//     is 0, has the fraction 1.0: it neither raises nor lowers the average;
//   - a shield scale without positions has the fraction 1.0, and the line
//     keeps its own shield type and count;
//   - the recharge rate written for a weapon energy of 0 is 0;
//   - the tunings are TuningMin when the profile has no tuning range or the
//     speed slider has no travel, and go up in proportion to the speed when
//     the speed range is shorter than the tuning range;
//   - the cargo floor is the profile's low floor when the cargo slider has no
//     travel, and the cargo share is 0 when CargoMax is 0.
// Sums and products are taken in 64 bits or floating point and saturate when
// cut back, so no NaN or infinity reaches a text or the line.
#pragma once

#include "balance/BalanceProfile.h"
#include "balance/ShieldScale.h"

#include <QString>

#include <array>
#include <cstdint>

// The movable sliders, in the order AutoBalance walks them.
namespace BalanceIndex {
enum : int
{
    Speed = 0,
    Accel,
    Reactor,
    Weapons,
    Recharge,
    Cargo,
    Hull,
    Turning,
    Count
};
} // namespace BalanceIndex

// The value of the ship line that slider `index` stands for, in the units of
// the profile: the raw field, the recharge total (rate x energy, single
// precision, truncated) or the turning (pitch x 6000, truncated).
int64_t ShipBalanceValue(const QString& line, int index);
// All eight, cutting the line once.
std::array<int64_t, 8> ShipBalanceValues(const QString& line);

// A slider's working value (its distance from the profile's bottom) and
// whether AutoBalance has moved it since all eight were last released.
struct BalanceSlider
{
    int32_t Value = 0;
    bool Touched = false;
};

// How AutoBalance picks the slider to move.
enum class BalanceMode
{
    Equal,  // each slider once before any moves again
    Lowest, // the slider nearest its bottom first, run to its end
    Highest // the slider farthest along first, run to its end
};

// Why AutoBalance stopped.
enum class BalanceStop
{
    AlreadyBalanced, // the shown average was 100; nothing moved
    Balanced,        // the average came to 100
    NothingCanMove,  // every slider that may move stands at the end the average needs, or is too coarse
    StepLimit        // the bound on steps was reached; never expected, a safety net
};

struct BalanceRun
{
    BalanceStop stop = BalanceStop::AlreadyBalanced;
    int steps = 0;      // rounds of the loop
    int average = 0;    // the shown average afterwards
    uint8_t coarse = 0; // bit i: slider i was set aside because one step of it jumped past 100
};

// The texts of the percent fields, the average and the detail panel.
struct BalanceDisplay
{
    std::array<QString, BalanceIndex::Count> percent; // "<n>%"
    QString shieldPercent;
    int average = 0;
    QString shieldType;   // "5MJ", "1GJ"; empty without a shield position
    QString shieldAmount; // the count; empty without a shield position
    QString tuning;
    QString speedMin, speedMax;
    QString reactor, weapons, recharge, hull;
    QString yaw, pitch, roll;
    QString cargoMin, cargoMax;
};

class BalanceModel
{
public:
    // Copies the limits; every slider stands at 0 and the shields at the
    // first position.
    explicit BalanceModel(const BalanceProfile& profile);

    const BalanceProfile& Profile() const { return m_profile; }

    // The top of a slider (0 when its range is empty or reversed), the step of
    // its keys in the ship line's units, and where it stands.
    int32_t Top(int index) const;
    int32_t LineStep(int index) const;
    // The profile's limits of a slider.
    int32_t Minimum(int index) const { return m_limits[index].min; }
    int32_t Maximum(int index) const { return m_limits[index].max; }
    int32_t Position(int index) const { return m_sliders[index].Value; }
    bool Touched(int index) const { return m_sliders[index].Touched; }
    // Moves a slider; a value outside 0..Top stops at that end.
    void SetPosition(int index, int64_t value);

    const ShieldScale& Shields() const { return m_shields; }
    int32_t ShieldSteps() const { return m_shields.Steps(); }
    int32_t ShieldPosition() const { return m_shieldPosition; }
    // A position outside 1..ShieldSteps stops at that end.
    void SetShieldPosition(int64_t position);

    // Sets the sliders from a ship line (values outside the profile stop at
    // the slider's ends; a shield pair the scale does not hold leaves the
    // shields where they stand) and updates the display.
    void LoadFromShipLine(const QString& line);

    // The fraction of a property at `value`, or at its present position when
    // `value` is -1; 1.0 is the middle of its range.
    double PropertyFraction(int index, int64_t value = -1) const;
    double ShieldFraction(int64_t value = -1) const;

    // Works out every text from the present positions; the average among them
    // is the one AutoBalance starts from.
    const BalanceDisplay& UpdateDisplay();
    const BalanceDisplay& Display() const { return m_display; }

    // Moves sliders until the average is 100; `changed` is the slider the
    // user just moved (left alone), or -1. Starts from the shown average.
    BalanceRun AutoBalance(int changed, BalanceMode mode);

    // Sets every slider, the shields too, to half its top, truncated.
    void SetAverage();

    // The line with the balanced fields rewritten from the present positions.
    QString ApplyToShipLine(const QString& line);

    // How far AutoBalance moves a slider in one step: 1% of its top in the
    // line step's units, at least 1.
    int32_t AutoStep(int index) const;
    // The most rounds AutoBalance can take with this profile (see there).
    int64_t StepBound() const;

private:
    // A slider's limits and what follows from them, worked out once.
    struct Limits
    {
        int32_t min = 0;
        int32_t max = 0;
        int32_t lineStep = 1;
        int32_t top = 0;  // Max - Min, 0 when empty or reversed
        int64_t mid = 0;  // Min + (Max - Min) / 2
        int32_t step = 1; // AutoBalance's step
    };
    static Limits MakeLimits(int32_t min, int32_t max, int32_t lineStep);
    const Limits& LimitsOf(int index) const { return m_limits[index]; }
    int64_t Bottom(int index) const { return LimitsOf(index).min; }
    int64_t ValueOf(int index) const { return Bottom(index) + m_sliders[index].Value; }

    int AverageNow() const;
    bool AtEnd(int index, bool raise) const;
    double Ratio(int index) const;
    int PickEqual(int changed, bool raise, uint8_t coarse);
    int PickExtreme(int changed, bool raise, bool lowest, uint8_t coarse, int& last) const;
    bool AnyCanMove(int changed, bool raise, uint8_t coarse) const;
    void ReleaseIfAllTouched();

    int64_t Tunings() const;
    QString CargoFloorText() const;
    std::optional<ShieldPair> ShieldPairNow() const;

    BalanceProfile m_profile;
    std::array<Limits, BalanceIndex::Count> m_limits;
    ShieldScale m_shields;
    std::array<BalanceSlider, BalanceIndex::Count> m_sliders{};
    int32_t m_shieldPosition = 1;
    BalanceDisplay m_display;
};
