#include "balance/DShipBalance.h"

#include "balance/BalanceText.h"
#include "forms/DBalanceValues.h"

#include <QSlider>

DShipBalance::DShipBalance(const QStringList& textTable, const BalanceProfile& profile, QWidget* parent)
    : ShipBalance(parent, nullptr, true), TextTable(textTable), m_model(profile)
{
    m_sliders = {SliderSpeed,        SliderAccel, SliderReactor, SliderWeapons,
                 SliderWeapRecharge, SliderCargo, SliderHull,    SliderTurning};
    ApplyTexts();
    SetUpSliders();
    SetUpDetails();
    ShowPositions();
    Loading = false;
}

QString DShipBalance::Label(int text) const
{
    return QStringLiteral("<b>") + TextTable.value(text) + QStringLiteral(":</b>");
}

void DShipBalance::ApplyTexts()
{
    using namespace BalanceText;
    setWindowTitle(QStringLiteral("Qt: ") + TextTable.value(BalanceShipTitle));
    GroupBalance->setTitle(TextTable.value(BalanceShipTitle));
    ButBalance->setText(TextTable.value(BalanceShipTitle));
    RadioEqual->setText(TextTable.value(SpreadEqually));
    RadioLowest->setText(TextTable.value(LowestFirst));
    RadioHighest->setText(TextTable.value(HighestFirst));
    CheckAuto->setText(TextTable.value(BalanceAutomatically));
    ButAverage->setText(TextTable.value(SetToAverage));
    ButDone->setText(TextTable.value(Done));
    ButCancel->setText(TextTable.value(Cancel));
    ButDetail->setText(TextTable.value(ShowDetails) + QStringLiteral(" >>>"));
    LabelSpeed->setText(Label(Speed));
    LabelAccel->setText(Label(Acceleration));
    LabelReactor->setText(Label(WeaponPower));
    LabelWeapons->setText(Label(Weapons));
    LabelRecharge->setText(Label(RechargeRate));
    LabelCargo->setText(Label(CargoSpace));
    LabelShield->setText(Label(Shields));
    LabelHull->setText(Label(HullStrength));
    LabelTurning->setText(Label(Turning));
    LabelAverage->setText(Label(Average));
    RadioEqual->setChecked(true);
    CheckAuto->setChecked(false);
}

void DShipBalance::SetUpSliders()
{
    for (int index = 0; index < BalanceIndex::Count; ++index) {
        QSlider* slider = m_sliders[index];
        slider->setRange(0, m_model.Top(index));
        slider->setSingleStep(m_model.LineStep(index));
    }
    const int steps = m_model.ShieldSteps();
    SliderShields->setRange(1, std::max(1, steps));
    SliderShields->setSingleStep(1);
    SliderShields->setEnabled(steps >= 1); // a scale without positions has nothing to move

    connect(SliderSpeed, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderSpeed);
    connect(SliderAccel, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderAccel);
    connect(SliderReactor, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderReactor);
    connect(SliderWeapons, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderWeapons);
    connect(SliderWeapRecharge, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderWeapRecharge);
    connect(SliderCargo, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderCargo);
    connect(SliderHull, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderHull);
    connect(SliderTurning, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderTurning);
    connect(SliderShields, &QSlider::valueChanged, this, &DShipBalance::Slot_SliderShields);
}

void DShipBalance::SetUpDetails()
{
    using namespace BalanceText;
    // The detail panel is the dialog's extension: it sits below the buttons,
    // hidden until ButDetail brings it out.
    Details = new DBalanceValues(this);
    Details->setWindowFlags(Qt::Widget);
    mainLayout->addWidget(Details);
    Details->hide();
    Details->GroupSpeed->setTitle(TextTable.value(Speed));
    Details->GroupTurning->setTitle(TextTable.value(Turning));
    Details->GroupWeapons->setTitle(TextTable.value(Weapons));
    Details->GroupCargo->setTitle(TextTable.value(CargoSpace));
    Details->GroupDefence->setTitle(TextTable.value(Defence));
    Details->LabelSpeedMin->setText(Label(Minimum));
    Details->LabelCargoMin->setText(Label(Minimum));
    Details->LabelSpeedMax->setText(Label(Maximum));
    Details->LabelCargoMax->setText(Label(Maximum));
    Details->LabelTuning->setText(Label(EngineTunings));
    Details->LabelYaw->setText(Label(Yaw));
    Details->LabelPitch->setText(Label(Pitch));
    Details->LabelRoll->setText(Label(Roll));
    Details->LabelEnergy->setText(Label(ReactorOutput));
    Details->LabelRecharge->setText(Label(RechargeRate));
    Details->LabelReactor->setText(Label(WeaponPower));
    Details->LabelShieldType->setText(Label(ShieldType));
    Details->LabelShield->setText(Label(Shields));
    Details->LabelHull->setText(Label(HullStrength));
}

QSlider* DShipBalance::SliderOf(int index) const
{
    if (index >= 0 && index < BalanceIndex::Count)
        return m_sliders[index];
    return SliderShields;
}

void DShipBalance::ShowPositions()
{
    const bool wasLoading = Loading;
    Loading = true;
    for (int index = 0; index < BalanceIndex::Count; ++index)
        m_sliders[index]->setValue(m_model.Position(index));
    if (m_model.ShieldSteps() >= 1)
        SliderShields->setValue(m_model.ShieldPosition());
    Loading = wasLoading;
}

void DShipBalance::LoadFromShipLine(const QString& line)
{
    Loading = true;
    m_model.LoadFromShipLine(line);
    ShowPositions();
    UpdateDisplay();
    Loading = false;
}

double DShipBalance::PropertyFraction(int index, int value) const
{
    return m_model.PropertyFraction(index, value);
}

double DShipBalance::ShieldFraction(int value) const
{
    return m_model.ShieldFraction(value);
}

void DShipBalance::UpdateDisplay()
{
    const BalanceDisplay& d = m_model.UpdateDisplay();
    LineAverage->setText(QString::number(d.average));
    LineSpeed->setText(d.percent[BalanceIndex::Speed]);
    LineAccel->setText(d.percent[BalanceIndex::Accel]);
    LineReactor->setText(d.percent[BalanceIndex::Reactor]);
    LineWeapon->setText(d.percent[BalanceIndex::Weapons]);
    LineWeapRecharge->setText(d.percent[BalanceIndex::Recharge]);
    LineCargo->setText(d.percent[BalanceIndex::Cargo]);
    LineHull->setText(d.percent[BalanceIndex::Hull]);
    LineTurning->setText(d.percent[BalanceIndex::Turning]);
    LineShields->setText(d.shieldPercent);

    Details->LineShieldType->setText(d.shieldType);
    Details->LineShieldAmt->setText(d.shieldAmount);
    Details->LineTuning->setText(d.tuning);
    Details->LineSpeedMin->setText(d.speedMin);
    Details->LineSpeedMax->setText(d.speedMax);
    Details->LineReactor->setText(d.reactor);
    Details->LineWeapons->setText(d.weapons);
    Details->LineRecharge->setText(d.recharge);
    Details->LineHull->setText(d.hull);
    Details->LineYaw->setText(d.yaw);
    Details->LinePitch->setText(d.pitch);
    Details->LineRoll->setText(d.roll);
    Details->LineCargoMin->setText(d.cargoMin);
    Details->LineCargoMax->setText(d.cargoMax);
}

void DShipBalance::Slot_UpdateData()
{
    UpdateDisplay();
}

BalanceMode DShipBalance::Mode() const
{
    if (RadioLowest->isChecked())
        return BalanceMode::Lowest;
    if (RadioEqual->isChecked())
        return BalanceMode::Equal;
    return BalanceMode::Highest;
}

void DShipBalance::AutoBalance(int changed)
{
    const bool wasLoading = Loading;
    Loading = true;
    m_lastRun = m_model.AutoBalance(changed, Mode());
    ShowPositions();
    UpdateDisplay();
    Loading = wasLoading;
}

QString DShipBalance::ApplyToShipLine(const QString& line)
{
    UpdateDisplay();
    return m_model.ApplyToShipLine(line);
}

void DShipBalance::Slot_Balance()
{
    AutoBalance(-1);
}

void DShipBalance::Slot_SetAverage()
{
    Loading = true;
    m_model.SetAverage();
    ShowPositions();
    UpdateDisplay();
    Loading = false;
}

void DShipBalance::Slot_Details()
{
    DetailsShown = !DetailsShown;
    Details->setVisible(DetailsShown);
    ButDetail->setText(TextTable.value(BalanceText::ShowDetails) +
                       (DetailsShown ? QStringLiteral(" <<<") : QStringLiteral(" >>>")));
    if (!DetailsShown)
        adjustSize();
}

// A slider moved by the user. AutoBalance starts from the average shown, which
// is still the one from before this move.
void DShipBalance::SliderMoved(int index, int value)
{
    if (Loading)
        return;
    m_model.SetPosition(index, value);
    if (CheckAuto->isChecked())
        AutoBalance(index);
    UpdateDisplay();
}

void DShipBalance::Slot_SliderSpeed(int value)
{
    SliderMoved(BalanceIndex::Speed, value);
}

void DShipBalance::Slot_SliderAccel(int value)
{
    SliderMoved(BalanceIndex::Accel, value);
}

void DShipBalance::Slot_SliderReactor(int value)
{
    SliderMoved(BalanceIndex::Reactor, value);
}

void DShipBalance::Slot_SliderWeapons(int value)
{
    SliderMoved(BalanceIndex::Weapons, value);
}

void DShipBalance::Slot_SliderWeapRecharge(int value)
{
    SliderMoved(BalanceIndex::Recharge, value);
}

void DShipBalance::Slot_SliderCargo(int value)
{
    SliderMoved(BalanceIndex::Cargo, value);
}

void DShipBalance::Slot_SliderHull(int value)
{
    SliderMoved(BalanceIndex::Hull, value);
}

void DShipBalance::Slot_SliderTurning(int value)
{
    SliderMoved(BalanceIndex::Turning, value);
}

void DShipBalance::Slot_SliderShields(int value)
{
    if (Loading)
        return;
    m_model.SetShieldPosition(value);
    UpdateDisplay();
    if (CheckAuto->isChecked())
        AutoBalance(-1);
    UpdateDisplay();
}
