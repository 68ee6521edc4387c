// Taking a package apart into loose files, as the window runs it: which
// package, which directory, and when the work starts. From the menu the work
// starts through the window's 100 ms timer; from the command line it runs at
// once ("quiet"), since there is no window to keep painting.
#pragma once

#include "app/WindowContext.h"

#include <QObject>
#include <QString>

#include <functional>

struct ExtractionResult;

class ExtractionFlow : public QObject
{
    Q_OBJECT
public:
    // `startBusy` shows a status text and makes the window busy before a
    // long job; `endBusy` undoes it.
    ExtractionFlow(WindowContext context, std::function<void(const QString& status)> startBusy,
                   std::function<void()> endBusy);

    const QString& Source() const { return m_source; }
    const QString& Target() const { return m_target; }

    // Asks for a package and then for the directory (the menu's way).
    void AskPackageAndTarget();
    // Asks for the directory, starting beside the package; a cancel ends here.
    void AskTarget(const QString& package, bool quiet);
    // Checks the directory and starts the work, at once when `quiet`.
    void ExtractTo(const QString& package, const QString& directory, bool quiet);

public slots:
    // The work itself, for Source into Target, ending with its box: the
    // result, or why the package could not be read or written.
    void Start();

private:
    void ShowResult(const ExtractionResult& result);
    const QString& Text(int index) const { return m_context.uiText[index]; }
    const QString& Extra(int index) const { return m_context.uiTextExtra[index]; }

    WindowContext m_context;
    std::function<void(const QString&)> m_startBusy;
    std::function<void()> m_endBusy;
    QString m_source;
    QString m_target;
};
