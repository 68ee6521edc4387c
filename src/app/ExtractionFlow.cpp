#include "app/ExtractionFlow.h"

#include "app/WindowTexts.h"
#include "core/AppSettings.h"
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
    // The package is taken apart by the extraction of the deploy module once
    // it lands; the window's state around it is complete.
    m_endBusy();
}
