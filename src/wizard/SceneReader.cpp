#include "wizard/SceneReader.h"

#include <QFile>
#include <QSet>
#include <QStringView>

namespace {

bool IsSkippedSceneLine(QStringView line)
{
    return line.startsWith(u'/') || line.trimmed().isEmpty();
}

bool OpensWithVersion(const QList<QStringView>& lines)
{
    for (QStringView line : lines) {
        if (IsSkippedSceneLine(line))
            continue;
        return line.startsWith(u"VER:");
    }
    return false;
}

// The body name of one P line, or an empty view.
QStringView BodyOf(QStringView line)
{
    if (!line.startsWith(u"P "))
        return {};
    const qsizetype first = line.indexOf(u';');
    if (first < 0)
        return {};
    QStringView field = line.mid(first + 1);
    const qsizetype second = field.indexOf(u';');
    if (second >= 0)
        field = field.left(second);
    if (!field.startsWith(u" B "))
        return {};
    return field.mid(3).trimmed();
}

} // namespace

QStringList SceneBodyNames(const QString& text, SceneCheck check)
{
    QList<QStringView> lines;
    for (QStringView line : QStringView(text).tokenize(u'\n'))
        lines.append(line.endsWith(u'\r') ? line.chopped(1) : line);
    if (check == SceneCheck::RequireVersion && !OpensWithVersion(lines))
        return {};

    QStringList bodies;
    QSet<QStringView> seen;
    for (QStringView line : lines) {
        const QStringView body = BodyOf(line);
        if (body.isEmpty() || seen.contains(body))
            continue;
        seen.insert(body);
        bodies.append(body.toString());
    }
    return bodies;
}

QStringList ReadSceneBodyNames(const QString& path, SceneCheck check, qint64 maxBytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxBytes)
        return {};
    return SceneBodyNames(QString::fromLocal8Bit(file.readAll()), check);
}
