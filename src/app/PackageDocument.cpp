#include "app/PackageDocument.h"

#include "app/FileListController.h"
#include "app/FormBinding.h"
#include "app/PackageFileEntries.h"
#include "app/ScriptListController.h"
#include "app/TableListControllers.h"
#include "app/TextListController.h"
#include "app/WindowTexts.h"
#include "core/ProgramDir.h"
#include "core/Services.h"
#include "forms/Prompter.h"
#include "gamedata/ShipLine.h"
#include "package/PackageReader.h"
#include "package/PackageWriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// The directory of the open package's files, with a slash behind it.
QString WorkDirPath()
{
    return ProgramPath("/ShipInstall/");
}

} // namespace

PackageDocument::PackageDocument(DocumentParts parts, WindowContext context)
    : m_parts(parts), m_context(std::move(context))
{
}

PackageDocument::~PackageDocument() = default;

bool PackageDocument::IsModified() const
{
    if (!m_saved)
        return true;
    const ShipPackage& saved = *m_saved;
    // Components take no part in the comparison.
    return !m_parts.form.Matches(saved) || !m_parts.models.Matches(saved.Models) ||
           !m_parts.others.Matches(saved.Files) || !m_parts.scripts.Matches(saved.Scripts) ||
           !m_parts.cockpits.Matches(saved.Cockpits) || !m_parts.dummies.Matches(saved.Dummies) ||
           !m_parts.texts.Matches(saved.Texts);
}

bool PackageDocument::HasContent() const
{
    if (m_parts.form.HasContent())
        return true;
    return !m_parts.texts.Rows().isEmpty() || !m_parts.dummies.Rows().isEmpty() ||
           !m_parts.components.Rows().isEmpty() || !m_parts.cockpits.Rows().isEmpty() ||
           !m_parts.scripts.Rows().isEmpty() || !m_parts.others.Rows().isEmpty() ||
           !m_parts.models.Rows().isEmpty();
}

void PackageDocument::Clear()
{
    m_parts.form.Clear();
    m_parts.texts.Clear();
    m_parts.models.Clear();
    m_parts.dummies.Clear();
    m_parts.components.Clear();
    m_parts.cockpits.Clear();
    m_parts.scripts.Clear();
    m_parts.others.Clear();
    m_saved.reset();
    m_currentFile.clear();
}

void PackageDocument::Adopt(std::unique_ptr<ShipPackage> record, const QString& path)
{
    m_saved = std::move(record);
    m_currentFile = path;
}

std::unique_ptr<ShipPackage> PackageDocument::Build()
{
    auto record = std::make_unique<ShipPackage>();
    const FormBinding& form = m_parts.form;
    form.Read(*record);

    const SettledShipLine settled = SettleShipLine(
        form.ShipLine(), form.ShipSceneName(), form.CockpitSceneName(), m_parts.cockpits.Rows(), record->ID);
    record->Data = settled.Data;
    record->Cockpits = settled.Cockpits;
    form.SetShipLine(settled.Data);

    record->Texts = m_parts.texts.Rows();
    const QString workDir = WorkDirPath();
    record->SceneFile = SceneEntry(form.ShipSceneName(), form.ShipSceneFile(), workDir);
    record->CockpitFile = SceneEntry(form.CockpitSceneName(), form.CockpitSceneFile(), workDir);

    // A model that is one of the scenes is stored as the scene only.
    QStringList sceneStems;
    for (const std::optional<FileEntry>& scene : {record->SceneFile, record->CockpitFile})
        if (scene)
            sceneStems.append(EntryStem(scene->Name));
    for (const FileRow& row : m_parts.models.Rows()) {
        const QString path = ResolvePackagePath(row.path, workDir);
        if (!IsReadableFile(path))
            continue;
        const FileEntry model = EntryForFile(path, ListEntryName(row.targetDir, path));
        if (!sceneStems.contains(EntryStem(model.Name)))
            AddModelOnce(record->Models, model);
    }
    for (const FileRow& row : m_parts.others.Rows()) {
        const QString path = ResolvePackagePath(row.path, workDir);
        if (!IsReadableFile(path))
            continue;
        const FileEntry file = EntryForFile(path, ListEntryName(row.targetDir, path));
        const auto sameName = [&](const FileEntry& present) { return present.Name == file.Name; };
        if (std::none_of(record->Files.begin(), record->Files.end(), sameName))
            record->Files.append(file);
    }
    record->Dummies = m_parts.dummies.Rows();
    record->Components = m_parts.components.Rows();
    record->Scripts = m_parts.scripts.Rows();
    return record;
}

void PackageDocument::Show(const ShipPackage& record)
{
    m_parts.form.Show(record);
    m_parts.texts.Show(record.Texts);
    m_parts.models.Show(record.Models);
    m_parts.others.Show(record.Files);
    m_parts.scripts.Show(record.Scripts);
    m_parts.dummies.Show(record.Dummies);
    m_parts.components.Show(record.Components);
    m_parts.cockpits.Show(record.Cockpits);
}

bool PackageDocument::Open(const QString& path)
{
    const QStringList& extra = m_context.uiTextExtra;
    auto record = std::make_unique<ShipPackage>();
    QFile file(path);
    bool opened = false;
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        m_context.prompter.critical(m_context.parent, Text(Txt::OpenFailed),
                                    Text(Txt::OpenFailedText) + " " + path, {Text(Txt::Ok)});
    } else {
        const PackageReadResult read = ReadPackage(file, ProgramDir(), *record, "ShipInstall/Scripts", true);
        if (read.check == PackageCheck::NewerFormat)
            m_context.prompter.critical(m_context.parent, extra[TxtExtra::NewerFormatCaption],
                                        extra[TxtExtra::NewerFormatText],
                                        {extra[TxtExtra::NewerFormatButton]});
        else if (read.failure == ReadFailure::UnsafeName)
            m_context.prompter.critical(m_context.parent, Text(Txt::OpenFailed),
                                        FormatMessage(extra[TxtExtra::UnsafeNameText], path, read.entry),
                                        {Text(Txt::Ok)});
        else if (read.failure != ReadFailure::None && read.failure != ReadFailure::NotAPackage)
            m_context.prompter.critical(m_context.parent, Text(Txt::OpenFailed),
                                        Text(Txt::OpenFailedText) + " " + path, {Text(Txt::Ok)});
        if (read.ok) {
            Show(*record);
            Adopt(std::move(record), path);
            opened = true;
        }
    }
    m_parts.form.ShowSceneNames();
    return opened;
}

PackageDocument::SaveOutcome PackageDocument::Save(const QString& path, bool compileModels, bool saveWeb,
                                                   const SaveFeedback& feedback)
{
    QDir(ProgramDir()).mkpath("temp");
    QFile stream(ProgramPath("/temp/") + QFileInfo(path).fileName() + ".tMp");
    if (!stream.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        m_context.prompter.critical(m_context.parent, Text(Txt::SaveFailed),
                                    FormatMessage(Text(Txt::SaveFailedText), path), {Text(Txt::Ok)});
        return SaveOutcome::CannotWriteStream;
    }

    const QString savingText = Text(Txt::StatusSaving) + " " + path + "...";
    feedback.status(savingText);
    std::unique_ptr<ShipPackage> record = Build();
    record->SaveWeb = saveWeb;

    PackageWriteHooks hooks;
    hooks.prepare = feedback.prepare;
    hooks.compileModels = compileModels;
    hooks.packageDir = WorkDirPath();
    hooks.progress = feedback.progress;
    hooks.adding = [&](const QString& name) {
        feedback.status(name.isEmpty() ? savingText : Text(Txt::StatusAddingFile) + ": " + name + "...");
    };
    hooks.compressing = [&] { feedback.status(Text(Txt::StatusCompressing) + ": " + path + "..."); };
    if (SavePackageFile(*record, stream, path, hooks) != PackageSaveResult::Saved)
        return SaveOutcome::Failed;
    if (record->SaveWeb && !record->Web.isEmpty())
        WriteUpdateNote(*record, path);

    // The record keeps the paths of the form, so that IsModified can compare
    // rows with it; the writer prepared its own copies.
    const QString line = record->Data;
    Adopt(std::move(record), path);
    m_parts.form.SetShipLine(line);
    return SaveOutcome::Saved;
}
