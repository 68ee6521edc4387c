// Speed, acceleration, turning, recharge and notoriety of DConfigShip: the
// widgets that show a field in two units keep each other in step.
#include "shipconfig/DConfigShip.h"

#include "shipconfig/ShipFormulas.h"

using namespace ShipFormulas;

void DConfigShip::Slot_MinSpeedChange(int value)
{
    LineSpeedMin->setText(MetresPerSecond(value));
    Slot_SpeedChange(SpinSpeed->value());
}

void DConfigShip::Slot_SpeedChange(int extensions)
{
    const TopSpeed top = TopSpeedOf(SpinSpeedMin->value(), extensions);
    LineSpeedMax2->setText(QString::number(top.units));
    LineSpeedMax->setText(top.metres);
}

void DConfigShip::Slot_MinSpeedUpdate()
{
    if (LineSpeedMin->text().isEmpty())
        return;
    SpinSpeedMin->setValue(UnitsFromMetres(LineSpeedMin->text()));
    Slot_SpeedChange(SpinSpeed->value());
}

void DConfigShip::Slot_AccelChange(int value)
{
    LineAccel->setText(MetresPerSecond(value));
}

void DConfigShip::Slot_AccelUpdate()
{
    if (!LineAccel->text().isEmpty())
        SpinAccel->setValue(UnitsFromMetres(LineAccel->text()));
}

namespace {

void ShowTurning(int dial, QLineEdit* shown, QLineEdit* raw)
{
    const Turning turning = TurningFromDial(dial);
    shown->setText(turning.shown);
    raw->setText(turning.raw);
}

} // namespace

void DConfigShip::Slot_YawDial(int value)
{
    ShowTurning(value, LineYaw1, LineYaw2);
}

void DConfigShip::Slot_PitchDial(int value)
{
    ShowTurning(value, LinePitch1, LinePitch2);
}

void DConfigShip::Slot_RollDial(int value)
{
    ShowTurning(value, LineRoll1, LineRoll2);
}

void DConfigShip::Slot_Recharge()
{
    LineRechargeT->setText(RechargePerSecond(LineRecharge->text(), SpinEnergy->value()));
}

void DConfigShip::Slot_RechargeT()
{
    LineRecharge->setText(RechargeShare(LineRechargeT->text(), SpinEnergy->value()));
}

void DConfigShip::UpdateRanks()
{
    constexpr int RanksPerTable = 16;
    ComboNotPreset->clear();
    ComboNotPreset->addItem(QString());
    const std::optional<int> table = RankTableOfRace(ComboRace->currentIndex());
    if (table && RankNames.size() >= (*table + 1) * RanksPerTable)
        ComboNotPreset->addItems(RankNames.mid(*table * RanksPerTable, RanksPerTable));
}

void DConfigShip::Slot_Not()
{
    if (const std::optional<int> notoriety = NotorietyPreset(ComboNotPreset->currentIndex()))
        SpinNot->setValue(*notoriety);
}
