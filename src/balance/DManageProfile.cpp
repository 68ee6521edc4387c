#include "balance/DManageProfile.h"

#include "balance/BalanceText.h"
#include "balance/DCreateProfile.h"
#include "balance/ProfileImport.h"
#include "forms/Prompter.h"

#include <QTreeWidgetItem>

namespace {

constexpr int kFileNameColumn = 3;

} // namespace

DManageProfile::DManageProfile(const BalanceContext& context, const QStringList& classNames,
                               const QStringList& variantNames, QWidget* parent)
    : ManageProfile(parent, nullptr, true), m_context(context), m_classNames(classNames),
      m_variantNames(variantNames), m_profiles(LoadProfiles(context.profilesDir))
{
    ApplyTexts();
    FillList();
}

void DManageProfile::ApplyTexts()
{
    using namespace BalanceText;
    const QStringList& text = m_context.uiText;
    setWindowTitle(QStringLiteral("Qt: ") + QString(text.value(ManageProfilesTitle)).remove(u'&'));
    ListProfile->setHeaderLabels({text.value(ProfileColumn), text.value(ShipClass), text.value(ShipVariation),
                                  text.value(FileNameColumn)});
    ListProfile->headerItem()->setTextAlignment(1, Qt::AlignHCenter | Qt::AlignVCenter);
    ButCreateNew->setText(text.value(CreateNew));
    ButClose->setText(text.value(Close));
}

QString DManageProfile::VariantText(int variant) const
{
    const QStringList& text = m_context.uiText;
    if (variant == -1)
        return text.value(BalanceText::AnyVariation);
    if (variant == 0)
        return text.value(BalanceText::StandardVariation) + QStringLiteral(" (0)");
    return m_variantNames.value(variant - 1) + QStringLiteral(" (") + QString::number(variant) + u')';
}

void DManageProfile::FillList()
{
    ListProfile->clear();
    for (const BalanceProfile& profile : m_profiles) {
        auto* item = new QTreeWidgetItem(ListProfile); // owned by the list
        item->setText(0, profile.Profile);
        item->setText(1, ClassCode(profile.Class));
        item->setTextAlignment(1, Qt::AlignHCenter | Qt::AlignVCenter);
        item->setText(2, VariantText(profile.Variant));
        item->setText(kFileNameColumn, profile.FileName);
    }
}

bool DManageProfile::Store(const BalanceProfile& profile)
{
    if (!SaveProfile(profile, m_context.profilesDir))
        return false;
    for (BalanceProfile& held : m_profiles)
        if (held.FileName == profile.FileName) {
            held = profile;
            return true;
        }
    m_profiles.append(profile);
    return true;
}

void DManageProfile::Slot_Create()
{
    BalanceProfile profile;
    DCreateProfile editor(m_context, m_classNames, m_variantNames, profile, this);
    if (m_context.runDialog(editor) != QDialog::Accepted)
        return;
    const QStringList& text = m_context.uiText;
    const std::optional<QString> name =
        m_context.prompter.text(this, text.value(BalanceText::SaveProfileCaption),
                                text.value(BalanceText::SaveProfileLabel), profile.Profile);
    // A cancelled, empty or refused name saves nothing.
    if (!name || !IsValidProfileFileName(*name))
        return;
    profile.FileName = *name;
    if (Store(profile))
        FillList();
}

void DManageProfile::Slot_Edit(QTreeWidgetItem* item)
{
    if (!item)
        return;
    const QString fileName = item->text(kFileNameColumn);
    for (BalanceProfile& held : m_profiles) {
        if (held.FileName != fileName)
            continue;
        BalanceProfile edited = held;
        DCreateProfile editor(m_context, m_classNames, m_variantNames, edited, this);
        editor.setWindowTitle(QStringLiteral("Qt: ") + m_context.uiText.value(BalanceText::EditProfile) +
                              QStringLiteral(": ") + fileName);
        if (m_context.runDialog(editor) == QDialog::Accepted && Store(edited))
            FillList();
        return;
    }
}
