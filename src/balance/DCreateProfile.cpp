#include "balance/DCreateProfile.h"

#include "balance/BalanceText.h"
#include "balance/DSelectVariant.h"
#include "balance/ProfileImport.h"
#include "balance/ShipTableFile.h"
#include "forms/Prompter.h"

#include <QSpinBox>

namespace {

// Selects the item `index` when the combo holds it, else no item.
void SelectItem(QComboBox* combo, int64_t index)
{
    combo->setCurrentIndex(index >= 0 && index < combo->count() ? static_cast<int>(index) : -1);
}

// The combo's item, or `kept` when it has none chosen.
int32_t ChosenItem(const QComboBox* combo, int32_t kept, int offset = 0)
{
    return combo->currentIndex() < 0 ? kept : combo->currentIndex() + offset;
}

} // namespace

DCreateProfile::DCreateProfile(const BalanceContext& context, const QStringList& classNames,
                               const QStringList& variantNames, BalanceProfile& profile, QWidget* parent)
    : CreateProfile(parent, nullptr, true), m_context(context), m_variantNames(variantNames),
      m_profile(profile)
{
    ApplyTexts();
    FillCombos(classNames, variantNames);
    if (!profile.Profile.isEmpty()) {
        LineProfile->setText(profile.Profile);
        SelectItem(ComboClass, profile.Class);
        ShowProfile(profile);
    }
}

void DCreateProfile::ApplyTexts()
{
    const QStringList& text = m_context.uiText;
    // A new profile's editor: the manager's button names it.
    QString create = text.value(BalanceText::CreateNew);
    while (create.endsWith(u'.'))
        create.chop(1);
    setWindowTitle(QStringLiteral("Qt: ") + create);
    ButSave->setText(text.value(BalanceText::Save));
    ButCancel->setText(text.value(BalanceText::Cancel));
    ButImport->setText(text.value(BalanceText::Import));
}

void DCreateProfile::FillCombos(const QStringList& classNames, const QStringList& variantNames)
{
    const QStringList& text = m_context.uiText;
    ComboClass->clear();
    ComboClass->addItems(classNames);
    ComboVariant->clear();
    ComboVariant->addItem(QStringLiteral("- ") + text.value(BalanceText::AnyVariation) +
                          QStringLiteral(" -"));
    ComboVariant->addItem(text.value(BalanceText::StandardVariation));
    for (QString name : variantNames)
        ComboVariant->addItem(name.remove(u'\n').remove(u'\r'));
}

QList<std::pair<QSpinBox*, int32_t BalanceProfile::*>> DCreateProfile::Spins() const
{
    return {
        {SpinSpeedMin, &BalanceProfile::SpeedMin},        {SpinSpeedMax, &BalanceProfile::SpeedMax},
        {SpinAccelMin, &BalanceProfile::AccelMin},        {SpinAccelMax, &BalanceProfile::AccelMax},
        {SpinTurnMin, &BalanceProfile::TurnMin},          {SpinTurnMax, &BalanceProfile::TurnMax},
        {SpinTuningMin, &BalanceProfile::TuningMin},      {SpinTuningMax, &BalanceProfile::TuningMax},
        {SpinWeaponMin, &BalanceProfile::WeaponMin},      {SpinWeaponMax, &BalanceProfile::WeaponMax},
        {SpinRechargeMin, &BalanceProfile::RechargeMin},  {SpinRechargeMax, &BalanceProfile::RechargeMax},
        {SpinReactorMin, &BalanceProfile::ReactorMin},    {SpinReactorMax, &BalanceProfile::ReactorMax},
        {SpinHullMin, &BalanceProfile::HullMin},          {SpinHullMax, &BalanceProfile::HullMax},
        {SpinCargoMin, &BalanceProfile::CargoMin},        {SpinCargoMax, &BalanceProfile::CargoMax},
        {SpinCargoAvg, &BalanceProfile::CargoAvg},        {SpinCargoDiff, &BalanceProfile::CargoDiff},
        {SpinShieldMin, &BalanceProfile::ShieldMinCount}, {SpinShieldMax, &BalanceProfile::ShieldMaxCount}};
}

void DCreateProfile::ShowProfile(const BalanceProfile& profile)
{
    for (const auto& [spin, field] : Spins())
        spin->setValue(profile.*field);
    SelectItem(ComboMinShield, profile.ShieldMinType);
    SelectItem(ComboMaxShield, profile.ShieldMaxType);
    SelectItem(ComboVariant, int64_t(profile.Variant) + 1);
}

void DCreateProfile::Slot_Done()
{
    const QStringList& text = m_context.uiText;
    if (LineProfile->text().isEmpty()) {
        m_context.prompter.warning(this, text.value(BalanceText::MissingInformation),
                                   text.value(BalanceText::ProfileHasNoName), {text.value(BalanceText::Ok)});
        return;
    }
    m_profile.Profile = LineProfile->text();
    m_profile.Class = ChosenItem(ComboClass, m_profile.Class);
    for (const auto& [spin, field] : Spins())
        m_profile.*field = spin->value();
    m_profile.ShieldMinType = ChosenItem(ComboMinShield, m_profile.ShieldMinType);
    m_profile.ShieldMaxType = ChosenItem(ComboMaxShield, m_profile.ShieldMaxType);
    m_profile.Variant = ChosenItem(ComboVariant, m_profile.Variant, -1);
    accept();
}

std::optional<QList<int>> DCreateProfile::AskVariants()
{
    DSelectVariant dialog(m_context.uiText, m_variantNames, this);
    if (m_context.runDialog(dialog) != QDialog::Accepted)
        return std::nullopt;
    QList<int> wanted = dialog.CheckedVariants();
    if (wanted.isEmpty())
        return std::nullopt;
    return wanted;
}

void DCreateProfile::Slot_Import()
{
    const QStringList& text = m_context.uiText;
    const QString filter = text.value(BalanceText::ShipTables) +
                           QStringLiteral(" (tships.pck tships.txt *.cat);;") +
                           text.value(BalanceText::GameCatalogs) + QStringLiteral(" (*.cat)");
    const QString chosen =
        m_context.prompter.openFile(this, text.value(BalanceText::SelectShipTable), QString(), filter);
    if (chosen.isEmpty())
        return;

    QList<int> wanted;
    if (ComboVariant->currentIndex() == 0) {
        const std::optional<QList<int>> asked = AskVariants();
        if (!asked)
            return;
        wanted = *asked;
    }

    const ShipTableRead read = ReadShipTable(chosen, m_context.tempDir + QStringLiteral("/TShips.txt"));
    if (read.status == ShipTableStatus::NotInCatalog) {
        m_context.prompter.warning(this, text.value(BalanceText::ExtractionFailed),
                                   text.value(BalanceText::CouldNotExtract) + u'\n' +
                                       QLatin1String(ShipTableEntry),
                                   {text.value(BalanceText::Ok)});
        return;
    }
    if (read.status != ShipTableStatus::Read)
        return;

    const int shipClass = ComboClass->currentIndex();
    const int variant = ComboVariant->currentIndex() - 1;
    const std::optional<BalanceProfile> limits =
        ImportProfileLimits(read.table.records, shipClass, variant, wanted);
    if (!limits) {
        m_context.prompter.warning(this, text.value(BalanceText::NoShipsFoundCaption),
                                   text.value(BalanceText::NoShipsFoundText), {text.value(BalanceText::Ok)});
        return;
    }
    ShowProfile(*limits);
}
