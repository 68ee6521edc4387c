// The profile editor: name, class, variant and every limit of one profile.
// It works on a profile it is given and writes into it only when the user
// saves (Slot_Done), so a cancelled edit leaves the profile as it was.
// Slot_Import fills the limits from the ships of a TShips table.
#pragma once

#include "balance/BalanceFlows.h"
#include "balance/BalanceProfile.h"
#include "forms/CreateProfile.h"

#include <QList>
#include <QStringList>

#include <cstdint>
#include <utility>

class QSpinBox;

class DCreateProfile : public CreateProfile
{
    Q_OBJECT
public:
    // The widgets are filled from `profile` when it has a name. `profile`
    // must outlive the dialog.
    DCreateProfile(const BalanceContext& context, const QStringList& classNames,
                   const QStringList& variantNames, BalanceProfile& profile, QWidget* parent = nullptr);

    // Sets the limits, the shield combos and the variant from `profile`; the
    // name and the class stay as they are. Values beyond a spin box's range
    // stop at its end; a variant or shield type the combos do not hold leaves
    // the combo without a choice, and saving then keeps the profile's own.
    void ShowProfile(const BalanceProfile& profile);

public slots:
    void Slot_Done() override;
    void Slot_Import() override;

private:
    void ApplyTexts();
    void FillCombos(const QStringList& classNames, const QStringList& variantNames);
    // The wanted variants of an import for any variant; nothing when the user
    // cancels or checks none.
    std::optional<QList<int>> AskVariants();
    QList<std::pair<QSpinBox*, int32_t BalanceProfile::*>> Spins() const;

    BalanceContext m_context;
    QStringList m_variantNames;
    BalanceProfile& m_profile;
};
