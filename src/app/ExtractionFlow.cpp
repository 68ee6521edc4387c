#include "app/ExtractionFlow.h"

#include "app/WindowTexts.h"
#include "core/AppSettings.h"
#include "core/Services.h"
#include "deploy/Extraction.h"
#include "forms/Prompter.h"

#include <QFileInfo>
#include <QTimer>

namespace {

constexpr int JobDelayMs = 100;

} // namespace

ExtractionFlow::ExtractionFlow(WindowContext context, std::function<void(const QString&)> startBusy,
                               std::function<void()> endBusy)
    : m_context(std::move(context)), m_startBusy(std::move(startBusy)), m_endBusy(std::move(endBusy))
{
}

void ExtractionFlow::AskPackageAndTarget()
{
    const QString path =
        m_context.prompter.openFile(m_context.parent, Text(Txt::ExtractSourceCaption),
                                    m_context.settings.SaveDir, Text(Txt::PackageFilter) + " (*.xsp)");
    if (!path.isEmpty())
        AskTarget(path, false);
}

void ExtractionFlow::AskTarget(const QString& package, bool quiet)
{
    const QString directory = m_context.prompter.directory(m_context.parent, Text(Txt::ExtractTargetCaption),
                                                           QFileInfo(package).path());
    if (!directory.isEmpty())
        ExtractTo(package, directory, quiet);
}

void ExtractionFlow::ExtractTo(const QString& package, const QString& directory, bool quiet)
{
    m_source = package;
    m_target = directory;
    if (!QFileInfo(directory).isDir()) {
        m_context.prompter.warning(m_context.parent, Text(Txt::DirectoryNotFound),
                                   Text(Txt::DirectoryNotFound) + ":\n" + directory, {Text(Txt::Ok)});
        return;
    }
    if (quiet) {
        Start();
        return;
    }
    m_startBusy(Text(Txt::StatusExtracting) + " " + package + "...");
    QTimer::singleShot(JobDelayMs, this, &ExtractionFlow::Start);
}

void ExtractionFlow::Start()
{
    ShowResult(ExtractPackage(m_source, m_target, m_context.settings.Prefix));
    m_endBusy();
}

void ExtractionFlow::ShowResult(const ExtractionResult& result)
{
    Prompter& prompter = m_context.prompter;
    const QStringList ok{Text(Txt::Ok)};
    switch (result.status) {
    case ExtractionStatus::Extracted:
        prompter.warning(m_context.parent, Text(Txt::Extracted),
                         FormatMessage(Text(Txt::ExtractedText), m_source, m_target), ok);
        return;
    case ExtractionStatus::TargetMissing: // it went between the check and the work
        prompter.warning(m_context.parent, Text(Txt::DirectoryNotFound),
                         Text(Txt::DirectoryNotFound) + ":\n" + m_target, ok);
        return;
    case ExtractionStatus::ReadFailed:
        prompter.warning(m_context.parent, Text(Txt::OpenFailed),
                         result.read.failure == ReadFailure::UnsafeName
                             ? FormatMessage(Extra(TxtExtra::UnsafeNameText), m_source, result.read.entry)
                             : Text(Txt::OpenFailedText) + " " + m_source,
                         ok);
        return;
    case ExtractionStatus::WriteFailed:
        break;
    }
    const QString where = result.entry.isEmpty() ? m_target : m_target + "/" + result.entry;
    const int text =
        result.written.isEmpty() ? TxtExtra::ExtractWriteFailedText : TxtExtra::ExtractIncompleteText;
    prompter.warning(m_context.parent, Extra(TxtExtra::ExtractWriteFailed),
                     FormatMessage(Extra(text), m_source, where), ok);
}
