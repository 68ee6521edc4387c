// What a part of the main window gets from the window: the parent of its
// dialogs, the prompter, the two tables of interface texts and the settings
// (owned by the window and kept up to date in place), and what to call when a
// change should show in the caption.
#pragma once

#include <QStringList>

#include <functional>

class Prompter;
class QWidget;
struct AppSettings;

struct WindowContext
{
    QWidget* parent;
    Prompter& prompter;
    const QStringList& uiText;
    const QStringList& uiTextExtra;
    const AppSettings& settings;
    std::function<void()> modified;
};
