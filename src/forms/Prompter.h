// The one door through which the program asks the user with a standard dialog.
//
// The main window owns a Prompter and hands a pointer to whatever it opens.
// QtPrompter calls the toolkit's dialogs; the test suites use a scripted one
// that replays answers and records every message it was asked to show.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

class QWidget;

enum class MessageKind
{
    Question,
    Warning,
    Critical,
    Information
};

class Prompter
{
public:
    virtual ~Prompter() = default;

    // File dialogs: an empty result (or list) means the user cancelled.
    virtual QString openFile(QWidget* parent, const QString& caption, const QString& dir,
                             const QString& filter) = 0;
    virtual QStringList openFiles(QWidget* parent, const QString& caption, const QString& dir,
                                  const QString& filter) = 0;
    virtual QString saveFile(QWidget* parent, const QString& caption, const QString& dir,
                             const QString& filter) = 0;
    virtual QString directory(QWidget* parent, const QString& caption, const QString& dir) = 0;

    // Input boxes: no value means the user cancelled.
    virtual std::optional<QString> text(QWidget* parent, const QString& caption, const QString& label,
                                        const QString& value) = 0;
    virtual std::optional<QString> item(QWidget* parent, const QString& caption, const QString& label,
                                        const QStringList& items, int current, bool editable) = 0;

    // Message boxes with up to three buttons; the result is the index of the
    // button chosen (0 for the first), or -1 when the box was closed otherwise.
    virtual int message(MessageKind kind, QWidget* parent, const QString& caption, const QString& text,
                        const QStringList& buttons) = 0;

    int question(QWidget* parent, const QString& caption, const QString& text, const QStringList& buttons)
    {
        return message(MessageKind::Question, parent, caption, text, buttons);
    }
    int warning(QWidget* parent, const QString& caption, const QString& text, const QStringList& buttons)
    {
        return message(MessageKind::Warning, parent, caption, text, buttons);
    }
    int critical(QWidget* parent, const QString& caption, const QString& text, const QStringList& buttons)
    {
        return message(MessageKind::Critical, parent, caption, text, buttons);
    }
    int information(QWidget* parent, const QString& caption, const QString& text, const QStringList& buttons)
    {
        return message(MessageKind::Information, parent, caption, text, buttons);
    }
};

// The real dialogs of the toolkit.
class QtPrompter : public Prompter
{
public:
    QString openFile(QWidget* parent, const QString& caption, const QString& dir,
                     const QString& filter) override;
    QStringList openFiles(QWidget* parent, const QString& caption, const QString& dir,
                          const QString& filter) override;
    QString saveFile(QWidget* parent, const QString& caption, const QString& dir,
                     const QString& filter) override;
    QString directory(QWidget* parent, const QString& caption, const QString& dir) override;
    std::optional<QString> text(QWidget* parent, const QString& caption, const QString& label,
                                const QString& value) override;
    std::optional<QString> item(QWidget* parent, const QString& caption, const QString& label,
                                const QStringList& items, int current, bool editable) override;
    int message(MessageKind kind, QWidget* parent, const QString& caption, const QString& text,
                const QStringList& buttons) override;
};
