// Construction, caption, the modified and content tests, clearing the form,
// the busy state and the work directories of the main window.
#include "app/DCreateShip.h"
#include "app/GameDirSearch.h"

#include "app/core/ProgramDir.h"
#include "app/core/Services.h"
#include "app/core/StatusProgressBar.h"
#include "forms/WListView.h"
#include "gamedata/ShipLine.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStatusBar>
#include <QTextStream>

const char* const DefaultShipLine =
    "0;0;0;0;0;0;0;0;0;106;1;5;37;0;112;202;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;"
    "0;0;0;0;0;0;0;0;0;0;0;35;36;1;0;0;0;0;0;1;0;25;1;0;0;0;0;0;HW_NEW_SHIP;";

namespace {

const QString PackageToken = QStringLiteral("<PACKAGE>/");

bool IsPackagePath(const QString& path)
{
    return path.startsWith(PackageToken);
}

// The path of a list row as the saved record holds it: directory, "/", file name.
QString RowPath(const QString& cell)
{
    const QString path = QString(cell).replace('\\', '/');
    const QFileInfo info(path);
    return info.path() + "/" + info.fileName();
}

// Every row of a file list is either still from the package or stands in the saved list.
bool FileListMatches(const QTreeWidget* list, const QList<FileEntry>& saved)
{
    if (list->topLevelItemCount() != saved.size())
        return false;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        const QString cell = list->topLevelItem(i)->text(0);
        if (IsPackagePath(cell))
            continue;
        const QString path = RowPath(cell);
        const bool found = std::any_of(saved.begin(), saved.end(),
                                       [&](const FileEntry& entry) { return entry.LocalPath == path; });
        if (!found)
            return false;
    }
    return true;
}

} // namespace

QList<IdName> ReadIdNameFile(const QString& path, bool isVariantFile)
{
    QList<IdName> result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return result;
    QTextStream stream(&file);
    while (!stream.atEnd()) {
        const QString line = stream.readLine();
        if (line.startsWith("//"))
            continue;
        const int colon = line.indexOf(':');
        const QString idText = colon < 0 ? line : line.left(colon);
        const QString name = colon < 0 ? QString() : line.mid(colon + 1);
        bool isNumber = false;
        const int id = idText.trimmed().toInt(&isNumber);
        const int value = isNumber ? id : 0;
        if (value == 0) {
            // A class needs a real id; a variant of id 0 is valid when it has a name.
            if (!isVariantFile || name.isEmpty())
                continue;
        }
        result.append({value, name});
    }
    return result;
}

DCreateShip::DCreateShip(std::unique_ptr<Prompter> prompter, QWidget* parent, const char* name)
    : CreateShip(parent, name), m_prompter(prompter ? std::move(prompter) : std::make_unique<QtPrompter>())
{
    CreateLists();

    BaseLang = "44";
    LoadSettings();
    LoadUiTexts(true);

    AddListColumns();

    SavedPackage.reset();
    UpdateCaption();

    LineAuthor->setText(DefAuthor);
    LineWeb->setText(DefWeb);
    LineMirror1->setText(DefMirror1);
    LineMirror2->setText(DefMirror2);
    SpinOrgDesc->setEnabled(false);

    ConnectSignals();
    TextRaw->setPlainText(DefaultShipLine);

    QDir program(ProgramDir());
    if (!program.exists("temp"))
        program.mkpath("temp");

    DetectGameDirs();
    if (GameDirs.isEmpty())
        AskForGameDir();

    ReadClassAndVariantFiles();
    CreateProgressBar();
    TextLoaded = false;
}

DCreateShip::~DCreateShip() = default;

void DCreateShip::CreateLists()
{
    auto make = [](QFrame* frame, const char* name, QAbstractItemView::SelectionMode mode) {
        auto* list = new WListView(frame, name); // owned by its frame
        list->setSelectionMode(mode);
        if (!frame->layout()) {
            auto* layout = new QVBoxLayout(frame);
            layout->setContentsMargins(0, 0, 0, 0);
        }
        frame->layout()->addWidget(list);
        return list;
    };
    ModelList = make(FrameList, "models list", QAbstractItemView::ExtendedSelection);
    ScriptList = make(FrameScripts, "script list", QAbstractItemView::SingleSelection);
    OtherList = make(FrameOther, "other files list", QAbstractItemView::ExtendedSelection);
}

void DCreateShip::AddListColumns()
{
    ModelList->setHeaderLabels({UiText[91], UiText[92]});
    ScriptList->setHeaderLabels({UiText[181], UiText[182], QString()});
    ScriptList->setColumnWidth(2, 0);
    OtherList->setHeaderLabels({UiText[91], UiText[92]});
}

void DCreateShip::ConnectSignals()
{
    for (QLineEdit* line : {LineID, LineName, LineAuthor, LineVersion, LineWeb, LineMirror1, LineMirror2,
                            LineScreen, LineShipScene, LineSceneFile, LineCockpitScene, LineSceneFileCp})
        connect(line, &QLineEdit::textChanged, this, &DCreateShip::Slot_Modified);
    connect(TextRaw, &QTextEdit::textChanged, this, &DCreateShip::Slot_Modified);
    connect(TextComment, &QTextEdit::textChanged, this, &DCreateShip::Slot_Modified);
    for (QCheckBox* box : {CheckArgon, CheckBoron, CheckParanid, CheckTeladi, CheckSplit, CheckPirate,
                           CheckFriend, CheckXenon})
        connect(box, &QCheckBox::clicked, this, &DCreateShip::Slot_Modified);

    connect(ButLoad, &QPushButton::clicked, this, &DCreateShip::Slot_LoadShip);
    connect(ButSave, &QPushButton::clicked, this, &DCreateShip::Slot_Save);
    ConnectContentLists();
}

bool DCreateShip::AddGameDir(const QString& chosen)
{
    QString dir = chosen;
    dir.replace('\\', '/');
    if (!HoldsGameExecutable(dir)) {
        prompter().critical(this, UiText[353], UiText[354], {UiText[60]});
        return false;
    }
    GameDirs.removeAll(dir);
    GameDirs.prepend(dir);
    while (GameDirs.size() > 10)
        GameDirs.removeLast();
    return true;
}

void DCreateShip::AskForGameDir()
{
    const QString dir = prompter().directory(this, UiText[235], QString());
    if (!dir.isEmpty())
        AddGameDir(dir);
}

void DCreateShip::ReadClassAndVariantFiles()
{
    ShipClasses = ReadIdNameFile(ProgramPath("/data/classes"), false);
    ShipVariants = ReadIdNameFile(ProgramPath("/data/variant"), true);
    ClassNames = QStringList(ShipClasses.size(), QString());
    VariantNames = QStringList(ShipVariants.size(), QString());
}

void DCreateShip::CreateProgressBar()
{
    ProgressBar = new StatusProgressBar(QMainWindow::statusBar(), "progress"); // owned by the status bar
    QMainWindow::statusBar()->addPermanentWidget(ProgressBar);
    ProgressBar->hide();
}

void DCreateShip::UpdateCaption()
{
    if (!EditTarget.isEmpty())
        return;
    const QString head = "X3 - Hullwright V" + QString::asprintf("%.2f", 2.0);
    if (CurrentFile.isEmpty())
        setWindowTitle(head + " [" + UiText[30] + "]");
    else if (IsModified())
        setWindowTitle(head + " [*" + CurrentFile + "]");
    else
        setWindowTitle(head + " [" + CurrentFile + "]");
}

void DCreateShip::Slot_Modified()
{
    if (CurrentFile.isEmpty())
        return;
    UpdateCaption();
}

bool DCreateShip::IsModified() const
{
    if (!SavedPackage)
        return true;
    const ShipPackage& saved = *SavedPackage;
    const QString line = TextRaw->toPlainText();

    if (line != saved.Data || LineName->text() != saved.Name || LineAuthor->text() != saved.Author)
        return true;
    if (LineVersion->text() != saved.Version || LineID->text() != saved.ID || LineWeb->text() != saved.Web ||
        LineMirror1->text() != saved.Mirror1 || LineMirror2->text() != saved.Mirror2)
        return true;

    const std::array<const QCheckBox*, ShipyardCount> yards = {
        CheckArgon, CheckBoron, CheckParanid, CheckSplit, CheckTeladi, CheckPirate, CheckFriend, CheckXenon};
    for (int i = 0; i < ShipyardCount; ++i)
        if (yards[i]->isChecked() != saved.Shipyards[i])
            return true;

    if (CommentToRecord(TextComment->toPlainText()) != saved.Comment)
        return true;

    const QString screen = LineScreen->text();
    if (screen.isEmpty() && !saved.ScreenShot.isEmpty())
        return true;
    if (!screen.isEmpty() && !IsPackagePath(screen))
        return true;

    if (ShipField(line, 16) != LineShipScene->text() || ShipField(line, 17) != LineCockpitScene->text())
        return true;
    for (const QLineEdit* scene : {LineSceneFile, LineSceneFileCp})
        if (!scene->text().isEmpty() && !IsPackagePath(scene->text()))
            return true;

    if (!FileListMatches(ModelList, saved.Models) || !FileListMatches(OtherList, saved.Files) ||
        !FileListMatches(ScriptList, saved.Scripts))
        return true;

    if (ListCockpit->topLevelItemCount() != saved.Cockpits.size())
        return true;
    for (int i = 0; i < ListCockpit->topLevelItemCount(); ++i)
        if (!saved.Cockpits.contains(ListCockpit->topLevelItem(i)->text(2)))
            return true;

    if (ListDummy->topLevelItemCount() != saved.Dummies.size())
        return true;
    for (int i = 0; i < ListDummy->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = ListDummy->topLevelItem(i);
        if (!saved.Dummies.contains(DummyEntry{row->text(0), row->text(1)}))
            return true;
    }

    if (ListText->topLevelItemCount() != saved.Texts.size())
        return true;
    for (int i = 0; i < ListText->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = ListText->topLevelItem(i);
        const TextEntry text{row->text(0).toInt(), row->text(1), row->text(2)};
        if (!saved.Texts.contains(text))
            return true;
    }
    return false;
}

bool DCreateShip::HasContent() const
{
    auto filled = [](const QLineEdit* line) { return !line->text().isEmpty(); };
    auto changed = [](const QLineEdit* line, const QString& fallback) {
        return !line->text().isEmpty() && line->text() != fallback;
    };
    if (filled(LineName) || filled(LineVersion) || filled(LineID) || changed(LineAuthor, DefAuthor))
        return true;
    for (const QCheckBox* box : {CheckArgon, CheckBoron, CheckParanid, CheckTeladi, CheckSplit, CheckPirate,
                                 CheckFriend, CheckXenon, CheckLangText})
        if (box->isChecked())
            return true;
    for (const QTreeWidget* list : std::initializer_list<const QTreeWidget*>{
             ListText, ListDummy, ListComp, ListCockpit, ScriptList, OtherList, ModelList})
        if (list->topLevelItemCount() > 0)
            return true;
    if (TextRaw->toPlainText() != DefaultShipLine)
        return true;
    if (filled(LineShipScene) || filled(LineCockpitScene) || filled(LineSceneFile) || filled(LineSceneFileCp))
        return true;
    if (changed(LineWeb, DefWeb) || changed(LineMirror1, DefMirror1) || changed(LineMirror2, DefMirror2))
        return true;
    if (filled(LineScreen) || !TextComment->toPlainText().isEmpty())
        return true;
    return CheckExisting->isChecked() || CheckExistingShip->isChecked();
}

bool DCreateShip::ClearDocument()
{
    if (HasContent() && IsModified()) {
        const int answer = prompter().question(this, UiText[393], UiText[394], {UiText[81], UiText[82]});
        if (answer != 0)
            return false;
    }
    for (QLineEdit* line : {LineName, LineAuthor, LineVersion, LineID})
        line->clear();
    for (QCheckBox* box : {CheckArgon, CheckBoron, CheckParanid, CheckTeladi, CheckSplit, CheckPirate,
                           CheckFriend, CheckXenon, CheckLangText, CheckExisting, CheckExistingShip})
        box->setChecked(false);

    SpinOrgDesc->setEnabled(false);
    SpinOrgDesc->setValue(1);
    ListText->setEnabled(true);

    for (QTreeWidget* list : std::initializer_list<QTreeWidget*>{ListText, ModelList, ListDummy, ListComp,
                                                                 ListCockpit, ScriptList, OtherList})
        list->clear();

    TextRaw->setPlainText(DefaultShipLine);
    for (QLineEdit* line : {LineShipScene, LineCockpitScene, LineSceneFile, LineSceneFileCp})
        line->clear();

    LineAuthor->setText(DefAuthor);
    LineWeb->setText(DefWeb);
    LineMirror1->setText(DefMirror1);
    LineMirror2->setText(DefMirror2);
    TextComment->clear();
    LineScreen->clear();

    SavedPackage.reset();
    CurrentFile.clear();
    UpdateCaption();
    return true;
}

void DCreateShip::SetBusy(bool enable)
{
    if (!enable)
        setCursor(Qt::WaitCursor);
    for (QWidget* widget : std::initializer_list<QWidget*>{ButLoad, ButImport, ButClose, ButSave, TabData,
                                                           ButSaveAs, ButCustom, ButBalance})
        widget->setEnabled(enable);
    if (enable)
        unsetCursor();
}

void DCreateShip::CleanWorkDirs()
{
    for (const QString& dir : {ProgramPath("/ShipInstall"), ProgramPath("/temp")})
        if (QFileInfo(dir).isDir())
            RemoveTree(dir, true);
}
