// The profile manager: the balance profiles of the Profiles directory in a
// list (name, class code, variant, file name), with the editor to create a
// new one or to change one by a double click. Every change is on disk as
// soon as the editor closes.
#pragma once

#include "balance/BalanceFlows.h"
#include "balance/BalanceProfile.h"
#include "forms/ManageProfile.h"

#include <QList>
#include <QStringList>

class DManageProfile : public ManageProfile
{
    Q_OBJECT
public:
    // Loads every profile of the context's directory.
    DManageProfile(const BalanceContext& context, const QStringList& classNames,
                   const QStringList& variantNames, QWidget* parent = nullptr);

    const QList<BalanceProfile>& Profiles() const { return m_profiles; }

    // The variant column's text of a profile.
    QString VariantText(int variant) const;

public slots:
    void Slot_Create() override;
    void Slot_Edit(QTreeWidgetItem* item) override;

private:
    void ApplyTexts();
    void FillList();
    // Writes the profile and takes it into the list in place of one of the
    // same file name. False when it could not be written.
    bool Store(const BalanceProfile& profile);

    BalanceContext m_context;
    QStringList m_classNames;
    QStringList m_variantNames;
    QList<BalanceProfile> m_profiles;
};
