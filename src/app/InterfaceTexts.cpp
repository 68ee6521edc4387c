// Loading the interface language and handing its texts to the main window.
#include "app/DCreateShip.h"

#include "app/core/ProgramDir.h"
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

QString BoldLabel(const QString& text)
{
    return "<b>" + text + ":</b>";
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
        UiText = PlaceholderUiTexts(UiTextCount);
        UiTextExtra = PlaceholderUiTexts(UiTextExtraCount);
        Languages.clear();
        ReadUiTexts(ProgramPath("/hw_languages.xml"), Language, UiText, UiTextExtra, Languages);
    }
    const QStringList& t = UiText;

    menuBar()->hide();
    const QList<QAction*> menus = menuBar()->actions();
    const int menuTexts[] = {0, 1, 191};
    for (int i = 0; i < 3 && i < menus.size(); ++i)
        menus[i]->setText(t[menuTexts[i]]);

    const std::pair<QAction*, int> actions[] = {
        {fileNew, 2},         {fileOpen, 4},       {fileSave, 6},       {fileSaveAs, 8},
        {fileLoad, 10},       {fileImport, 12},    {fileExit, 14},      {settingConfig, 16},
        {settingManage, 311}, {toolsExtract, 192}, {toolsBalance, 309}, {toolsConfig, 313},
    };
    for (const auto& [action, index] : actions) {
        action->setText(t[index]);
        action->setIconText(PlainActionText(t[index]));
        action->setToolTip(t[index + 1]);
    }

    const std::pair<QWidget*, int> tabs[] = {
        {TabMain, 20},   {TabText, 21}, {TabScene, 22},   {TabModel, 23},    {TabDummy, 24},  {TabComp, 25},
        {TCockpits, 26}, {TabRaw, 124}, {TabUpdate, 169}, {TabScripts, 179}, {TabExtra, 201}, {TabOther, 229},
    };
    for (const auto& [page, index] : tabs)
        SetTab(TabData, page, t[index]);

    const std::pair<QAbstractButton*, int> buttons[] = {
        {ButLoad, 18},        {ButImport, 19},   {ButSave, 27},        {ButSaveAs, 28},
        {ButClose, 29},       {ButDummy, 103},   {ButComp, 121},       {ButLoadCockpit, 126},
        {ButCustom, 208},     {ButBalance, 301}, {CheckExisting, 363}, {CheckExistingShip, 397},
        {CheckArgon, 36},     {CheckBoron, 37},  {CheckParanid, 38},   {CheckTeladi, 39},
        {CheckSplit, 40},     {CheckPirate, 41}, {CheckFriend, 260},   {CheckXenon, 261},
        {CheckLangText, 396},
    };
    for (const auto& [button, index] : buttons)
        button->setText(t[index]);
    GroupShipyard->setTitle(t[35]);

    const std::pair<QLabel*, int> labels[] = {
        {LabelWeb, 170},          {LabelMirror1, 171}, {LabelMirror2, 172}, {LabelShipID, 31},
        {LabelShipName, 32},      {LabelAuthor, 33},   {LabelVersion, 34},  {LabelShipScene, 101},
        {LabelCockpitScene, 102}, {LabelScreen, 202},  {LabelComment, 203},
    };
    for (const auto& [label, index] : labels)
        label->setText(BoldLabel(t[index]));
    LabelScripts->setText(t[180]);

    SetHeaders(ListText, {t[42], t[43], t[44]});
    SetHeaders(ListDummy, {t[104], t[105]});
    SetHeaders(ListComp, {t[104], t[122], t[105]});
    SetHeaders(ListCockpit, {t[122], t[125], t[105]});
    if (ScriptList)
        SetHeaders(ScriptList, {t[181], t[182]});
    menuBar()->show();
}
