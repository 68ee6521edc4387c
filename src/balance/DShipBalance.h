// The balance dialog: a ship line valued against a profile. Eight sliders
// and the shield scale stand for the ship's properties between the profile's
// limits, each with its percentage of the profile's middle, and their mean
// is the ship's average. The user moves sliders by hand or lets AutoBalance
// move the others back to an average of 100; Done gives the line rewritten
// from the sliders (ApplyToShipLine).
//
// The dialog owns a BalanceModel, which holds the positions, the display
// texts and AutoBalance; the sliders show the model's positions. While code
// moves the sliders, Loading keeps their slots out.
#pragma once

#include "balance/BalanceModel.h"
#include "balance/BalanceProfile.h"
#include "forms/ShipBalance.h"

#include <QString>
#include <QStringList>

#include <array>

class DBalanceValues;
class QSlider;

class DShipBalance : public ShipBalance
{
    Q_OBJECT
public:
    DShipBalance(const QStringList& textTable, const BalanceProfile& profile, QWidget* parent = nullptr);

    // Sets the sliders from a ship line and updates every text.
    void LoadFromShipLine(const QString& line);
    // The fraction of a property at a slider value, or at its slider's
    // position when `value` is -1; 1.0 is the middle of its range.
    double PropertyFraction(int index, int value = -1) const;
    double ShieldFraction(int value = -1) const;
    // Rewrites the percentages, the average and the detail panel.
    void UpdateDisplay();
    // Moves the sliders until the average is 100, in the mode of the radio
    // buttons; `changed` is the slider the user moved, or -1.
    void AutoBalance(int changed);
    // The line with the balanced fields rewritten from the sliders.
    QString ApplyToShipLine(const QString& line);

    const BalanceModel& Model() const { return m_model; }
    // How the last AutoBalance ended.
    const BalanceRun& LastRun() const { return m_lastRun; }
    // The slider of a property (BalanceIndex), or of the shields for -1.
    QSlider* SliderOf(int index) const;

public slots:
    void Slot_Balance() override;
    void Slot_SetAverage() override;
    void Slot_Details() override;
    void Slot_UpdateData();
    void Slot_SliderSpeed(int value);
    void Slot_SliderAccel(int value);
    void Slot_SliderReactor(int value);
    void Slot_SliderWeapons(int value);
    void Slot_SliderWeapRecharge(int value);
    void Slot_SliderCargo(int value);
    void Slot_SliderHull(int value);
    void Slot_SliderTurning(int value);
    void Slot_SliderShields(int value);

private:
    void ApplyTexts();
    void SetUpSliders();
    void SetUpDetails();
    void ShowPositions();
    void SliderMoved(int index, int value);
    BalanceMode Mode() const;
    QString Label(int text) const;

    QStringList TextTable;
    BalanceModel m_model;
    BalanceRun m_lastRun;
    std::array<QSlider*, BalanceIndex::Count> m_sliders{};
    bool Loading = true;
    bool DetailsShown = false;
    DBalanceValues* Details = nullptr; // a child of the dialog, which owns it
};
