#include "wizard/DImportWizard.h"

#include "forms/LanguageText.h"
#include "forms/Prompter.h"
#include "forms/WizardShip.h"
#include "forms/WizardText.h"
#include "language/GameText.h"
#include "wizard/ImportCheckPage.h"
#include "wizard/ImportPickPage.h"
#include "wizard/ImportShipPage.h"
#include "wizard/ImportTextPage.h"
#include "wizard/ImportWizardTexts.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>

namespace T = ImportWizardText;

namespace {

// How many names the note of things not found lists before it stops.
constexpr int NotFoundShown = 12;

QString BoldLabel(const QString& text)
{
    return "<b>" + text + ":</b>";
}

// The page file of a language file: the last four characters of its name
// without extension, when they are digits and not all zero; empty otherwise.
QString PageFileOf(const QString& fileName)
{
    const QString base = QFileInfo(fileName).completeBaseName();
    if (base.size() < 4)
        return {};
    const QString page = base.right(4);
    for (QChar c : page)
        if (!c.isDigit())
            return {};
    return page.toInt() != 0 ? page : QString();
}

QStringList LanguageFiles(const QDir& dir, const QString& pattern)
{
    return dir.entryList({pattern + ".xml", pattern + ".pck"}, QDir::Files, QDir::Name);
}

} // namespace

DImportWizard::DImportWizard(std::unique_ptr<ImportSession> session, Prompter& prompter,
                             const QStringList& uiText, const QStringList& uiTextExtra,
                             ImportWizardSettings settings, QWidget* parent)
    : QWizard(parent), m_session(std::move(session)), m_prompter(prompter), m_uiText(uiText),
      m_uiTextExtra(uiTextExtra), m_settings(std::move(settings))
{
    setObjectName("import wizard");
    setWindowTitle("Qt: " + Text(T::Caption) + " - " + m_session->Catalog());
    setButtonText(QWizard::CancelButton, Text(T::Cancel));
    setButtonText(QWizard::NextButton, Text(T::Next) + " >");
    setButtonText(QWizard::BackButton, "< " + Text(T::Back));
    setButtonText(QWizard::HelpButton, Text(T::Help));
    setButtonText(QWizard::FinishButton, m_uiTextExtra.value(ImportWizardExtraText::Finish));
    setOption(QWizard::HaveHelpButton, false);
    resize(720, 540);
    AddPages();
    connect(this, &QWizard::currentIdChanged, this, &DImportWizard::showPage);
}

DImportWizard::~DImportWizard() = default;

void DImportWizard::AddPages()
{
    const QString icons = m_settings.ProgramDir + "/Icons/";
    const QStringList pickCaptions = {Text(T::AvailableGroup),  Text(T::ChosenGroup),
                                      Text(T::Add) + " -->",    Text(T::AddAll) + " -->>",
                                      "<-- " + Text(T::Remove), "<<-- " + Text(T::RemoveAll)};
    auto pickPage = [&](ImportPickPage::Layout layout, const char* icon, int title) {
        auto* page = new ImportPickPage(layout, QIcon(icons + icon), this); // owned by the wizard
        page->SetCaptions(pickCaptions[0], pickCaptions[1], pickCaptions[2], pickCaptions[3], pickCaptions[4],
                          pickCaptions[5]);
        page->setTitle(Text(title));
        page->setFinalPage(true);
        return page;
    };
    auto checkPage = [&](ImportCheckPage::Kind kind, CheckTree* tree, int title, const QStringList& columns) {
        auto* page = new ImportCheckPage(kind, tree, this); // owned by the wizard
        page->SetColumnTitles(columns);
        page->setTitle(Text(title));
        page->setFinalPage(true);
        return page;
    };

    m_shipPage = new ImportShipPage(this); // owned by the wizard
    m_shipPage->setTitle(Text(T::ShipTitle));
    m_shipPage->Form()->ListShips->setHeaderLabels({Text(T::ShipIdColumn), Text(T::ShipNameColumn), "#"});
    m_shipPage->Fill(m_session->ShipRows(), m_settings.ProgramDir);
    connect(m_shipPage, &ImportShipPage::ShipSelected, this, &DImportWizard::Slot_SelectedShip);
    connect(m_shipPage, &ImportShipPage::ShipChosen, this, &DImportWizard::Slot_SelectShip);
    setPage(ShipPage, m_shipPage);

    if (m_session->HasDummies()) {
        m_dummyPage = checkPage(ImportCheckPage::Kind::Dummies, &m_session->Dummies(), T::DummyTitle,
                                {Text(T::SectionColumn), Text(T::DataColumn)});
        setPage(DummyPage, m_dummyPage);
    }

    m_modelPage = pickPage(ImportPickPage::Layout::ListsAbove, "model.png", T::ModelTitle);
    ConnectPickPage(m_modelPage, &DImportWizard::Slot_AddModel, &DImportWizard::Slot_AddAllModel,
                    &DImportWizard::Slot_RemoveModel, &DImportWizard::Slot_RemoveAllModel);
    setPage(ModelPage, m_modelPage);

    if (m_session->HasCockpits()) {
        m_cockpitPage = pickPage(ImportPickPage::Layout::ListsBeside, "cockpit.png", T::CockpitTitle);
        ConnectPickPage(m_cockpitPage, &DImportWizard::Slot_AddCockpit, &DImportWizard::Slot_AddAllCockpit,
                        &DImportWizard::Slot_RemoveCockpit, &DImportWizard::Slot_RemoveAllCockpit);
        setPage(CockpitPage, m_cockpitPage);
    }

    if (m_session->HasComponents()) {
        m_componentPage =
            checkPage(ImportCheckPage::Kind::Components, &m_session->Components(), T::ComponentTitle,
                      {Text(T::SectionColumn), Text(T::IdColumn), Text(T::DataColumn)});
        setPage(ComponentPage, m_componentPage);
    }

    if (m_session->HasTextures()) {
        m_texturePage = pickPage(ImportPickPage::Layout::ListsAbove, "texture.png", T::TextureTitle);
        ConnectPickPage(m_texturePage, &DImportWizard::Slot_AddTexture, &DImportWizard::Slot_AddAllTexture,
                        &DImportWizard::Slot_RemoveTexture, &DImportWizard::Slot_RemoveAllTexture);
        setPage(TexturePage, m_texturePage);
    }

    m_textPage = new ImportTextPage(m_settings.ProgramDir, this); // owned by the wizard
    m_textPage->setTitle(Text(T::TextTitle));
    m_textPage->setFinalPage(true);
    WizardText* form = m_textPage->Form();
    form->ListText->setHeaderLabels(
        {Text(T::LanguageColumn), Text(T::NameColumn), Text(T::DescriptionColumn)});
    form->LabelRightClick->setText(Text(T::RightClickHint));
    form->ButFile->setText(Text(T::ImportFiles));
    form->ButDir->setText(Text(T::ImportDirectory));
    connect(form->ListText, &QWidget::customContextMenuRequested, this, &DImportWizard::Slot_TextMenu);
    connect(form->ButFile, &QPushButton::clicked, this, &DImportWizard::Slot_ImportFile);
    connect(form->ButDir, &QPushButton::clicked, this, &DImportWizard::Slot_ImportDir);
    setPage(TextPage, m_textPage);
}

void DImportWizard::ConnectPickPage(ImportPickPage* page, void (DImportWizard::*add)(),
                                    void (DImportWizard::*addAll)(), void (DImportWizard::*remove)(),
                                    void (DImportWizard::*removeAll)())
{
    connect(page->AddButton(), &QPushButton::clicked, this, add);
    connect(page->AddAllButton(), &QPushButton::clicked, this, addAll);
    connect(page->RemoveButton(), &QPushButton::clicked, this, remove);
    connect(page->RemoveAllButton(), &QPushButton::clicked, this, removeAll);
    // A double click moves the entry as the single-move button does.
    connect(page->AvailableList(), &QListWidget::itemDoubleClicked, this, add);
    connect(page->ChosenList(), &QListWidget::itemDoubleClicked, this, remove);
}

// --- Page changes

void DImportWizard::showPage(int id)
{
    const int left = m_lastPage;
    m_lastPage = id;
    if (left == ShipPage && id != ShipPage)
        CollectShipParts();
    switch (id) {
    case ModelPage:
        CollectDummyModels();
        break;
    case TexturePage:
        ScanModelTextures();
        break;
    case TextPage:
        // Read once for each chosen ship, so that coming back keeps the user's changes.
        if (!m_session->TextsRead())
            m_session->ReadShipTexts();
        m_textPage->Show(m_session->Texts());
        break;
    default:
        break;
    }
}

void DImportWizard::Slot_SelectedShip(QTreeWidgetItem* item)
{
    // The page tells the wizard whether Next is offered; it is while a ship is selected.
    Q_UNUSED(item);
    if (QAbstractButton* next = button(QWizard::NextButton); next && currentId() == ShipPage)
        next->setEnabled(m_shipPage->isComplete());
}

void DImportWizard::Slot_SelectShip(QTreeWidgetItem* item)
{
    if (item && currentId() == ShipPage && m_shipPage->isComplete())
        next();
}

void DImportWizard::CollectShipParts()
{
    const int line = m_shipPage->SelectedLine();
    if (line < 0)
        return;
    m_session->CollectShipParts(line);
    ShowParts();
}

void DImportWizard::ShowParts()
{
    m_modelPage->Show(m_session->Models());
    if (m_texturePage)
        m_texturePage->Show(m_session->Textures());
    if (m_cockpitPage)
        m_cockpitPage->Show(m_session->Cockpits());
    if (m_dummyPage)
        m_dummyPage->Show();
    if (m_componentPage)
        m_componentPage->Show();
    m_textPage->Show(m_session->Texts());
    ShowNotFound();
}

void DImportWizard::ShowNotFound()
{
    const QStringList& missing = m_session->NotFound();
    if (missing.isEmpty()) {
        m_modelPage->SetNote({});
        return;
    }
    QStringList shown = missing.mid(0, NotFoundShown);
    if (missing.size() > NotFoundShown)
        shown.append(QStringLiteral("... (%1)").arg(missing.size()));
    m_modelPage->SetNote(m_uiTextExtra.value(ImportWizardExtraText::NotInMod) + ' ' + shown.join(", "));
}

void DImportWizard::FillCockpitLists()
{
    m_session->FillCockpitLists();
    if (m_cockpitPage)
        m_cockpitPage->Show(m_session->Cockpits());
}

void DImportWizard::CollectDummyModels()
{
    m_session->CollectDummyModels();
    ShowParts();
}

void DImportWizard::ScanModelTextures()
{
    if (!m_texturePage || m_session->Models().Chosen().isEmpty())
        return;
    const int answer = m_prompter.question(this, Text(T::TextureQuestionCaption),
                                           Text(T::TextureQuestionText), {Text(T::Yes), Text(T::No)});
    if (answer != 0)
        return;
    m_session->ScanModelTextures(m_settings.X2bcPath);
    m_texturePage->Show(m_session->Textures());
}

// --- Moving entries between the lists

void DImportWizard::Slot_AddModel()
{
    m_session->Models().Choose(m_modelPage->SelectedAvailable());
    m_modelPage->Show(m_session->Models());
}

void DImportWizard::Slot_AddAllModel()
{
    m_session->Models().ChooseAll();
    m_modelPage->Show(m_session->Models());
}

void DImportWizard::Slot_RemoveModel()
{
    m_session->Models().Release(m_modelPage->SelectedChosen());
    m_modelPage->Show(m_session->Models());
}

void DImportWizard::Slot_RemoveAllModel()
{
    m_session->Models().ReleaseAll();
    m_modelPage->Show(m_session->Models());
}

void DImportWizard::Slot_AddTexture()
{
    m_session->Textures().Choose(m_texturePage->SelectedAvailable());
    m_texturePage->Show(m_session->Textures());
}

void DImportWizard::Slot_AddAllTexture()
{
    m_session->Textures().ChooseAll();
    m_texturePage->Show(m_session->Textures());
}

void DImportWizard::Slot_RemoveTexture()
{
    m_session->Textures().Release(m_texturePage->SelectedChosen());
    m_texturePage->Show(m_session->Textures());
}

void DImportWizard::Slot_RemoveAllTexture()
{
    m_session->Textures().ReleaseAll();
    m_texturePage->Show(m_session->Textures());
}

void DImportWizard::Slot_AddCockpit()
{
    m_session->Cockpits().Choose(m_cockpitPage->SelectedAvailable());
    m_cockpitPage->Show(m_session->Cockpits());
}

void DImportWizard::Slot_AddAllCockpit()
{
    m_session->Cockpits().ChooseAll();
    m_cockpitPage->Show(m_session->Cockpits());
}

void DImportWizard::Slot_RemoveCockpit()
{
    m_session->Cockpits().Release(m_cockpitPage->SelectedChosen());
    m_cockpitPage->Show(m_session->Cockpits());
}

void DImportWizard::Slot_RemoveAllCockpit()
{
    m_session->Cockpits().ReleaseAll();
    m_cockpitPage->Show(m_session->Cockpits());
}

// --- The texts page

std::unique_ptr<QMenu> DImportWizard::BuildTextMenu(QTreeWidgetItem* item)
{
    const QString icons = m_settings.ProgramDir + "/Icons/";
    auto menu = std::make_unique<QMenu>();
    auto add = [&](int text, const char* icon, void (DImportWizard::*slot)()) {
        connect(menu->addAction(QIcon(icons + icon), Text(text)), &QAction::triggered, this, slot);
    };
    add(T::AddLanguage, "add.png", &DImportWizard::Slot_AddLanguage);
    if (item) {
        add(T::RemoveLanguage, "remove.png", &DImportWizard::Slot_RemoveLanguage);
        menu->addSeparator();
        add(T::ChangeName, "edit.png", &DImportWizard::Slot_ChangeName);
        add(T::ChangeDescription, "edit.png", &DImportWizard::Slot_ChangeDesc);
    }
    menu->addSeparator();
    add(T::ClearList, "trash.png", &DImportWizard::Slot_ClearText);
    return menu;
}

void DImportWizard::Slot_TextMenu(const QPoint& position)
{
    QTreeWidget* list = m_textPage->List();
    QTreeWidgetItem* item = list->itemAt(position);
    if (item)
        list->setCurrentItem(item);
    BuildTextMenu(item)->exec(list->viewport()->mapToGlobal(position));
}

bool DImportWizard::ExecLanguageText(LanguageText& dialog)
{
    return dialog.exec() == QDialog::Accepted;
}

void DImportWizard::Slot_AddLanguage()
{
    LanguageText dialog(this, "language text", true);
    dialog.setWindowTitle("Qt: " + Text(T::LanguageTextCaption));
    dialog.LabelNumber->setText(BoldLabel(Text(T::LanguageLabel)));
    dialog.LabelName->setText(BoldLabel(Text(T::NameLabel)));
    dialog.LabelDesc->setText(BoldLabel(Text(T::DescriptionLabel)));
    dialog.ButOk->setText(Text(T::Ok));
    dialog.ButCancel->setText(Text(T::CancelButton));
    dialog.SpinLang->setValue(44);
    if (!ExecLanguageText(dialog))
        return;
    m_session->Texts().append(
        {dialog.SpinLang->text(), dialog.LineName->text(), dialog.TextDesc->toPlainText()});
    m_textPage->Show(m_session->Texts());
}

void DImportWizard::Slot_RemoveLanguage()
{
    const int index = m_textPage->SelectedIndex();
    if (index < 0 || index >= m_session->Texts().size())
        return;
    m_session->Texts().removeAt(index);
    m_textPage->Show(m_session->Texts());
}

void DImportWizard::ChangeTextColumn(int column, int captionIndex, int labelIndex)
{
    const int index = m_textPage->SelectedIndex();
    if (index < 0 || index >= m_session->Texts().size())
        return;
    ImportedText& text = m_session->Texts()[index];
    QString& value = column == 1 ? text.Name : text.Description;
    const std::optional<QString> answer = m_prompter.text(
        this, "Qt: " + Text(captionIndex), Text(labelIndex) + " (" + text.Language + ")", value);
    // An empty answer, like a cancel, keeps the old text.
    if (!answer || answer->isEmpty())
        return;
    value = *answer;
    m_textPage->Show(m_session->Texts());
}

void DImportWizard::Slot_ChangeName()
{
    ChangeTextColumn(1, T::ChangeNameCaption, T::ChangeNameLabel);
}

void DImportWizard::Slot_ChangeDesc()
{
    ChangeTextColumn(2, T::ChangeDescriptionCaption, T::ChangeDescriptionLabel);
}

void DImportWizard::Slot_ClearText()
{
    m_session->Texts().clear();
    m_textPage->Show(m_session->Texts());
}

void DImportWizard::Slot_ImportFile()
{
    const QStringList files = m_prompter.openFiles(this, Text(T::TextFilesCaption), m_settings.TextDir,
                                                   Text(T::TextFilesFilter) + " (*.xml *.pck)");
    if (m_session->ImportTextFiles(files))
        m_textPage->Show(m_session->Texts());
}

void DImportWizard::Slot_ImportDir()
{
    QString start = m_settings.TextDir;
    if (start.isEmpty() && !m_settings.GameDir.isEmpty())
        start = m_settings.GameDir + "/t";
    QString directory = m_prompter.directory(this, Text(T::TextDirectoryCaption), start);
    if (directory.isEmpty())
        return;
    directory.replace('\\', '/');
    const QDir dir(directory);

    // The page files present, in order of first appearance.
    QStringList pages;
    for (const QString& name : LanguageFiles(dir, "*")) {
        const QString page = PageFileOf(name);
        if (!page.isEmpty() && !pages.contains(page))
            pages.append(page);
    }
    if (pages.isEmpty())
        return;
    const std::optional<QString> choice =
        m_prompter.item(this, "Qt: " + Text(T::TextPageCaption), Text(T::TextPageLabel), pages, 0, false);
    if (!choice || choice->isEmpty())
        return;
    QStringList files;
    for (const QString& name : LanguageFiles(dir, "*" + *choice))
        files.append(dir.filePath(name));
    if (m_session->ImportTextFiles(files))
        m_textPage->Show(m_session->Texts());
}
