#include "balance/BalanceReport.h"

#include "gamedata/ShipLine.h"

const char* BalanceModeName(BalanceMode mode)
{
    switch (mode) {
    case BalanceMode::Equal:
        return "Equal";
    case BalanceMode::Lowest:
        return "Lowest";
    case BalanceMode::Highest:
        return "Highest";
    }
    return "";
}

const char* BalanceStopName(BalanceStop stop)
{
    switch (stop) {
    case BalanceStop::AlreadyBalanced:
        return "AlreadyBalanced";
    case BalanceStop::Balanced:
        return "Balanced";
    case BalanceStop::NothingCanMove:
        return "NothingCanMove";
    case BalanceStop::StepLimit:
        return "StepLimit";
    }
    return "";
}

const char* BalancePropertyName(int index)
{
    static const char* const names[BalanceIndex::Count] = {"Speed",    "Accel", "Reactor", "Weapons",
                                                           "Recharge", "Cargo", "Hull",    "Turning"};
    return index >= 0 && index < BalanceIndex::Count ? names[index] : "";
}

BalanceReport ReportBalance(const BalanceProfile& profile, const QString& shipLine)
{
    BalanceReport report;
    report.fits = ProfilesForShip({profile}, shipLine).size() == 1;
    BalanceModel loaded(profile);
    loaded.LoadFromShipLine(shipLine);
    report.display = loaded.Display();
    report.lineValues = ShipBalanceValues(shipLine);
    for (int index = 0; index < BalanceIndex::Count; ++index)
        report.fractions[index] = loaded.PropertyFraction(index);
    report.shieldFraction = loaded.ShieldFraction();
    report.shieldPosition = loaded.ShieldPosition();
    for (size_t i = 0; i < AllBalanceModes.size(); ++i) {
        BalanceModel model = loaded;
        BalanceModeResult& result = report.modes[i];
        result.mode = AllBalanceModes[i];
        result.run = model.AutoBalance(-1, result.mode);
        result.line = model.ApplyToShipLine(shipLine);
    }
    return report;
}
