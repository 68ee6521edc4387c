// Construction of the main window and its parts, the caption, the modified
// and content tests, clearing the form, the busy state, the game's texts and
// the work directories.
#include "app/DCreateShip.h"

#include "app/BalanceController.h"
#include "app/EditMode.h"
#include "app/ExtractionFlow.h"
#include "app/FileListController.h"
#include "app/FormBinding.h"
#include "app/GameDirSearch.h"
#include "app/ModImport.h"
#include "app/PackageDocument.h"
#include "app/ScriptListController.h"
#include "app/ShipConfigFlow.h"
#include "app/TableListControllers.h"
#include "app/TextListController.h"
#include "app/WindowContext.h"
#include "app/WindowTexts.h"
#include "core/ProgramDir.h"
#include "core/Services.h"
#include "core/StatusProgressBar.h"
#include "deploy/ModelCompiler.h"
#include "forms/WListView.h"

#include <QDir>
#include <QFileInfo>
#include <QStatusBar>
#include <QVBoxLayout>

#include <climits>

namespace {

// A run-time list in the layout of its frame; the frame owns it.
WListView* MakeList(QFrame* frame, const char* name, QAbstractItemView::SelectionMode mode)
{
    auto* list = new WListView(frame, name);
    list->setSelectionMode(mode);
    if (!frame->layout()) {
        auto* layout = new QVBoxLayout(frame);
        layout->setContentsMargins(0, 0, 0, 0);
    }
    frame->layout()->addWidget(list);
    return list;
}

} // namespace

DCreateShip::DCreateShip(std::unique_ptr<Prompter> prompter, QWidget* parent, const char* name)
    : CreateShip(parent, name), m_prompter(prompter ? std::move(prompter) : std::make_unique<QtPrompter>())
{
    m_modelList = MakeList(FrameList, "models list", QAbstractItemView::ExtendedSelection);
    m_scriptList = MakeList(FrameScripts, "script list", QAbstractItemView::SingleSelection);
    m_otherList = MakeList(FrameOther, "other files list", QAbstractItemView::ExtendedSelection);

    LoadSettings();
    LoadUiTexts(true);
    AddListColumns();
    CreateParts();
    UpdateCaption();

    LineAuthor->setText(m_settings.DefAuthor);
    LineWeb->setText(m_settings.DefWeb);
    LineMirror1->setText(m_settings.DefMirror1);
    LineMirror2->setText(m_settings.DefMirror2);
    SpinOrgDesc->setEnabled(false);

    ConnectSignals();
    TextRaw->setPlainText(DefaultShipLine);

    QDir program(ProgramDir());
    if (!program.exists("temp"))
        program.mkpath("temp");

    DetectGameDirs();
    if (m_settings.GameDirs.isEmpty())
        AskForGameDir();

    m_gameTexts.LoadClassesAndVariants(ProgramDir());
    CreateProgressBar();
}

DCreateShip::~DCreateShip() = default;

WindowContext DCreateShip::Context()
{
    return {this, *m_prompter, m_uiText, m_uiTextExtra, m_settings, [this] { Slot_Modified(); }};
}

void DCreateShip::CreateParts()
{
    m_form = std::make_unique<FormBinding>(*this, m_settings);
    m_models = std::make_unique<FileListController>(m_modelList, FileListKind::Models(), Context(),
                                                    LineSceneFile, LineSceneFileCp);
    m_others = std::make_unique<FileListController>(m_otherList, FileListKind::OtherFiles(), Context());
    m_scripts = std::make_unique<ScriptListController>(m_scriptList, Context());
    m_texts =
        std::make_unique<TextListController>(ListText, Context(), [this] { return TextRaw->toPlainText(); });
    m_dummies = std::make_unique<DummyListController>(ListDummy, Context());
    m_components = std::make_unique<ComponentListController>(ListComp, Context());
    m_cockpits = std::make_unique<CockpitListController>(ListCockpit, Context());
    const DocumentParts parts{*m_form,  *m_models,  *m_others,     *m_scripts,
                              *m_texts, *m_dummies, *m_components, *m_cockpits};
    m_document = std::make_unique<PackageDocument>(parts, Context());
    m_extraction = std::make_unique<ExtractionFlow>(
        Context(), [this](const QString& status) { StartBusyJob(status); }, [this] { FinishBusyJob(); });
    m_editMode = std::make_unique<EditMode>(*this, *m_document, parts, Context());
    m_balance = std::make_unique<BalanceController>(Context());
    m_modImport = std::make_unique<ModImport>(parts, *m_document, Context(), m_gameTexts,
                                              [this](bool ready, const QString& status) {
                                                  if (ready)
                                                      FinishBusyJob();
                                                  else
                                                      StartBusyJob(status);
                                              });
    m_shipConfig = std::make_unique<ShipConfigFlow>(Context(), TextRaw, LineSceneFile, *m_dummies,
                                                    *m_cockpits, m_gameTexts);
}

void DCreateShip::AddListColumns()
{
    const QStringList& t = m_uiText;
    m_modelList->setHeaderLabels({t[Txt::ColumnFile], t[Txt::ColumnGameDir]});
    m_scriptList->setHeaderLabels({t[Txt::ColumnScript], t[Txt::ColumnSize], QString()});
    m_scriptList->setColumnWidth(2, 0);
    m_otherList->setHeaderLabels({t[Txt::ColumnFile], t[Txt::ColumnGameDir]});
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
}

void DCreateShip::AskForGameDir()
{
    const QString answer = prompter().directory(this, m_uiText[Txt::GameDirCaption], QString());
    if (answer.isEmpty())
        return;
    const QString dir = QString(answer).replace('\\', '/');
    if (!HoldsGameExecutable(dir)) {
        prompter().critical(this, m_uiText[Txt::InvalidGameDir], m_uiText[Txt::InvalidGameDirText],
                            {m_uiText[Txt::Ok]});
        return;
    }
    PutGameDirFirst(m_settings.GameDirs, dir);
}

void DCreateShip::CreateProgressBar()
{
    m_progressBar = new StatusProgressBar(QMainWindow::statusBar(), "progress"); // owned by the status bar
    QMainWindow::statusBar()->addPermanentWidget(m_progressBar);
    m_progressBar->hide();
}

void DCreateShip::UpdateCaption()
{
    // Edit mode sets the caption once when it starts.
    if (!m_editTarget.isEmpty())
        return;
    const QString head = WindowCaptionHead();
    const QString& file = m_document->CurrentFile();
    if (file.isEmpty())
        setWindowTitle(head + " [" + m_uiText[Txt::NewShipCaption] + "]");
    else if (IsModified())
        setWindowTitle(head + " [*" + file + "]");
    else
        setWindowTitle(head + " [" + file + "]");
}

void DCreateShip::Slot_Modified()
{
    // A ship that was never saved shows no star, whatever changes.
    if (m_document && !m_document->CurrentFile().isEmpty())
        UpdateCaption();
}

bool DCreateShip::IsModified() const
{
    return m_document->IsModified();
}

bool DCreateShip::HasContent() const
{
    return m_document->HasContent();
}

bool DCreateShip::ClearDocument()
{
    if (HasContent() && IsModified()) {
        const int answer =
            prompter().question(this, m_uiText[Txt::UnsavedCaption], m_uiText[Txt::UnsavedText],
                                {m_uiText[Txt::Yes], m_uiText[Txt::No]});
        if (answer != 0)
            return false;
    }
    m_document->Clear();
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

void DCreateShip::StartBusyJob(const QString& status)
{
    SetBusy(false);
    repaint();
    QMainWindow::statusBar()->showMessage(status);
}

void DCreateShip::FinishBusyJob()
{
    QMainWindow::statusBar()->clearMessage();
    SetBusy(true);
}

void DCreateShip::CleanWorkDirs()
{
    for (const QString& dir : {ProgramPath("/ShipInstall"), ProgramPath("/temp")})
        if (QFileInfo(dir).isDir())
            RemoveTree(dir, true);
}

void DCreateShip::ShowProgress(int64_t done, int64_t total)
{
    // The bar counts in int: large totals are scaled down together with the value.
    int64_t scale = 1;
    while (total / scale > INT_MAX / 2)
        scale *= 2;
    const int maximum = int(std::max<int64_t>(total / scale, 1));
    if (m_progressBar->maximum() != maximum || m_progressBar->minimum() != 0)
        m_progressBar->setRange(0, maximum);
    m_progressBar->setValue(int(std::min<int64_t>(done / scale, maximum)));
}

QString DCreateShip::PrepareFile(FileEntry& file, bool compile)
{
    return ::PrepareFile(file, compile, ProgramDir(), m_settings.X2bcDir);
}

void DCreateShip::GetText()
{
    DetectGameDirs();
    m_gameTexts.Load(m_settings.GameDirs.value(0), m_settings.BaseLang, m_settings.ReadTextTableAtStart);
    setEnabled(true);
    repaint();
    QMainWindow::statusBar()->clearMessage();
}

void DCreateShip::ParseGameText(const QString& path)
{
    m_gameTexts.ParseFile(path);
}

void DCreateShip::StartEditMode()
{
    // A target that opens no ship leaves a normal window.
    if (!m_editMode->Start(m_editTarget))
        m_editTarget.clear();
}
