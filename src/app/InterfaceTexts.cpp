// Loading the interface language and giving the window its texts.
#include "app/DCreateShip.h"

#include "app/ContentListSupport.h"
#include "app/WindowTexts.h"
#include "core/ProgramDir.h"
#include "forms/WListView.h"

#include <QMenuBar>
#include <QTabWidget>

namespace {

void SetTab(QTabWidget* tabs, QWidget* page, const QString& text)
{
    const int index = tabs->indexOf(page);
    if (index >= 0)
        tabs->setTabText(index, text);
}

// The tool bar shows an action's plain text: no mnemonic, no trailing dots.
QString PlainActionText(QString text)
{
    text.replace("&&", QStringLiteral("\x01"));
    text.remove('&');
    text.replace(QStringLiteral("\x01"), "&");
    while (text.endsWith('.'))
        text.chop(1);
    return text.trimmed();
}

void SetHeaders(QTreeWidget* list, const QStringList& titles)
{
    for (int column = 0; column < titles.size(); ++column)
        list->headerItem()->setText(column, titles[column]);
}

} // namespace

void DCreateShip::LoadUiTexts(bool read)
{
    if (read) {
        m_uiText = PlaceholderUiTexts(UiTextCount);
        m_uiTextExtra = PlaceholderUiTexts(UiTextExtraCount);
        m_languages.clear();
        ReadUiTexts(ProgramPath("/hw_languages.xml"), m_settings.Language, m_uiText, m_uiTextExtra,
                    m_languages);
    }
    const QStringList& t = m_uiText;

    menuBar()->hide();
    const QList<QAction*> menus = menuBar()->actions();
    const int menuTexts[] = {Txt::MenuFile, Txt::MenuSettings, Txt::MenuTools};
    for (int i = 0; i < 3 && i < menus.size(); ++i)
        menus[i]->setText(t[menuTexts[i]]);

    // An action's tool tip is the text behind its own.
    const std::pair<QAction*, int> actions[] = {
        {fileNew, Txt::ActionNew},
        {fileOpen, Txt::ActionOpen},
        {fileSave, Txt::ActionSave},
        {fileSaveAs, Txt::ActionSaveAs},
        {fileLoad, Txt::ActionLoadShip},
        {fileImport, Txt::ActionImportWizard},
        {fileExit, Txt::ActionExit},
        {settingConfig, Txt::ActionConfiguration},
        {settingManage, Txt::ActionManageProfiles},
        {toolsExtract, Txt::ActionExtract},
        {toolsBalance, Txt::ActionBalance},
        {toolsConfig, Txt::ActionConfigureShip},
    };
    for (const auto& [action, index] : actions) {
        action->setText(t[index]);
        action->setIconText(PlainActionText(t[index]));
        action->setToolTip(t[index + 1]);
    }

    const std::pair<QWidget*, int> tabs[] = {
        {TabMain, Txt::TabMain},       {TabText, Txt::TabText},   {TabScene, Txt::TabScene},
        {TabModel, Txt::TabModel},     {TabDummy, Txt::TabDummy}, {TabComp, Txt::TabComp},
        {TCockpits, Txt::TabCockpits}, {TabRaw, Txt::TabRaw},     {TabUpdate, Txt::TabUpdate},
        {TabScripts, Txt::TabScripts}, {TabExtra, Txt::TabExtra}, {TabOther, Txt::TabOther},
    };
    for (const auto& [page, index] : tabs)
        SetTab(TabData, page, t[index]);

    const std::pair<QAbstractButton*, int> buttons[] = {
        {ButLoad, Txt::ButtonLoad},
        {ButImport, Txt::ButtonImport},
        {ButSave, Txt::ButtonSave},
        {ButSaveAs, Txt::ButtonSaveAs},
        {ButClose, Txt::ButtonClose},
        {ButDummy, Txt::ButtonImportDummies},
        {ButComp, Txt::ButtonImportComponents},
        {ButLoadCockpit, Txt::ButtonImportCockpits},
        {ButCustom, Txt::ButtonCustomise},
        {ButBalance, Txt::ButtonBalance},
        {CheckExisting, Txt::CheckUseGameDescription},
        {CheckExistingShip, Txt::CheckReplacesShip},
        {CheckArgon, Txt::YardArgon},
        {CheckBoron, Txt::YardBoron},
        {CheckParanid, Txt::YardParanid},
        {CheckTeladi, Txt::YardTeladi},
        {CheckSplit, Txt::YardSplit},
        {CheckPirate, Txt::YardPirates},
        {CheckFriend, Txt::YardFriendly},
        {CheckXenon, Txt::YardXenon},
        {CheckLangText, Txt::CheckLanguageText},
    };
    for (const auto& [button, index] : buttons)
        button->setText(t[index]);
    GroupShipyard->setTitle(t[Txt::GroupShipyards]);

    const std::pair<QLabel*, int> labels[] = {
        {LabelWeb, Txt::LabelWeb},
        {LabelMirror1, Txt::LabelMirror1},
        {LabelMirror2, Txt::LabelMirror2},
        {LabelShipID, Txt::LabelShipId},
        {LabelShipName, Txt::LabelShipName},
        {LabelAuthor, Txt::LabelAuthor},
        {LabelVersion, Txt::LabelVersion},
        {LabelShipScene, Txt::LabelShipScene},
        {LabelCockpitScene, Txt::LabelCockpitScene},
        {LabelScreen, Txt::LabelScreenshot},
        {LabelComment, Txt::LabelComment},
    };
    for (const auto& [label, index] : labels)
        label->setText(BoldLabel(t[index]));
    LabelScripts->setText(t[Txt::LabelScripts]);

    SetHeaders(ListText, {t[Txt::ColumnLanguage], t[Txt::ColumnShipName], t[Txt::ColumnDescription]});
    SetHeaders(ListDummy, {t[Txt::ColumnSection], t[Txt::ColumnData]});
    SetHeaders(ListComp, {t[Txt::ColumnSection], t[Txt::ColumnId], t[Txt::ColumnData]});
    SetHeaders(ListCockpit, {t[Txt::ColumnId], t[Txt::ColumnIndex], t[Txt::ColumnData]});
    if (m_scriptList)
        SetHeaders(m_scriptList, {t[Txt::ColumnScript], t[Txt::ColumnSize]});
    menuBar()->show();
}
