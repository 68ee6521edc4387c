#include "balance/BalanceFlows.h"

#include "balance/BalanceText.h"
#include "balance/DManageProfile.h"
#include "balance/DShipBalance.h"
#include "forms/Prompter.h"

#include <QDialog>

int ExecDialog(QDialog& dialog)
{
    return dialog.exec();
}

std::optional<BalanceProfile> SelectBalanceProfile(const BalanceContext& context, const QString& shipLine,
                                                   bool* cancelled)
{
    if (cancelled)
        *cancelled = false;
    const QList<BalanceProfile> fitting = ProfilesForShip(LoadProfiles(context.profilesDir), shipLine);
    if (fitting.isEmpty())
        return std::nullopt;
    if (fitting.size() == 1)
        return fitting.first();

    QStringList names;
    for (const BalanceProfile& profile : fitting)
        names.append(profile.Profile);
    const std::optional<QString> answer =
        context.prompter.item(context.parent, context.uiText.value(BalanceText::SelectProfileCaption),
                              context.uiText.value(BalanceText::SelectProfileLabel), names, 0, false);
    if (answer && !answer->isEmpty())
        for (const BalanceProfile& profile : fitting)
            if (profile.Profile == *answer)
                return profile;
    if (cancelled)
        *cancelled = true;
    return std::nullopt;
}

std::optional<QString> BalanceShip(const BalanceContext& context, const QString& shipLine)
{
    const QStringList& text = context.uiText;
    if (shipLine.trimmed().isEmpty()) {
        context.prompter.warning(context.parent, text.value(BalanceText::NoShipDataCaption),
                                 text.value(BalanceText::NoShipDataText), {text.value(BalanceText::Close)});
        return std::nullopt;
    }
    bool cancelled = false;
    const std::optional<BalanceProfile> profile = SelectBalanceProfile(context, shipLine, &cancelled);
    if (!profile) {
        // A choice the user cancelled needs no word; a ship without a profile does.
        if (!cancelled)
            context.prompter.warning(context.parent, text.value(BalanceText::NoProfileCaption),
                                     text.value(BalanceText::NoProfileText),
                                     {text.value(BalanceText::Close)});
        return std::nullopt;
    }
    DShipBalance dialog(text, *profile, context.parent);
    dialog.LoadFromShipLine(shipLine);
    if (context.runDialog(dialog) != QDialog::Accepted)
        return std::nullopt;
    return dialog.ApplyToShipLine(shipLine);
}

void ManageProfiles(const BalanceContext& context, const QStringList& classNames,
                    const QStringList& variantNames)
{
    DManageProfile dialog(context, classNames, variantNames, context.parent);
    context.runDialog(dialog);
}

QStringList DisplayNames(const QList<IdName>& list, const QStringList& gameNames)
{
    QStringList names;
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QString name = gameNames.value(i);
        names.append(name.isEmpty() ? list[i].Name : name);
    }
    return names;
}
