// A ship valued against a profile, and what AutoBalance would write in each
// mode: the whole balance dialog without a window, for the command line and
// for scripts that balance a mod.
#pragma once

#include "balance/BalanceModel.h"
#include "balance/BalanceProfile.h"

#include <QString>

#include <array>

struct BalanceModeResult
{
    BalanceMode mode = BalanceMode::Equal;
    BalanceRun run;
    QString line; // the ship line as Done would write it after the run
};

struct BalanceReport
{
    bool fits = false;      // the profile is one that Balance Ship would offer for this ship
    BalanceDisplay display; // the ship as loaded, before any balancing
    std::array<double, BalanceIndex::Count> fractions{};
    double shieldFraction = 1.0;
    int32_t shieldPosition = 0; // on the profile's shield scale, 0 when it has no positions
    std::array<int64_t, BalanceIndex::Count> lineValues{}; // the ship's own values, not cut to the profile
    std::array<BalanceModeResult, 3> modes;                // Equal, Lowest, Highest
};

// The modes in the order of the dialog's radio buttons.
inline constexpr std::array<BalanceMode, 3> AllBalanceModes = {BalanceMode::Equal, BalanceMode::Lowest,
                                                               BalanceMode::Highest};

// The name of a mode and of a stop, as the command line prints them.
const char* BalanceModeName(BalanceMode mode);
const char* BalanceStopName(BalanceStop stop);
// The name of a slider, as the command line prints it.
const char* BalancePropertyName(int index);

// Loads the line into a model of the profile, as the dialog does, and runs
// AutoBalance(-1) in each mode on a fresh copy of it.
BalanceReport ReportBalance(const BalanceProfile& profile, const QString& shipLine);
