#include "forms/WListView.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QUrl>

namespace {

// A file:// URL becomes its local path (percent escapes decoded); anything
// else is kept as it stands.
QString LocalPathOrText(const QUrl& url, const QString& original)
{
    return url.isLocalFile() ? url.toLocalFile() : original;
}

// The URL list of a drag, one entry a line.
QString TextOfUrls(const QList<QUrl>& urls)
{
    QStringList lines;
    for (const QUrl& url : urls)
        lines.append(LocalPathOrText(url, url.toString()));
    return lines.join('\n');
}

// Plain text in which some lines may be file:// URLs (several file managers
// put the URL list into the text as well).
QString TextWithLocalPaths(const QString& text)
{
    QStringList lines = text.split('\n');
    for (QString& line : lines) {
        QString bare = line;
        bare.remove('\r');
        if (bare.trimmed().startsWith(QLatin1String("file:"), Qt::CaseInsensitive))
            line = LocalPathOrText(QUrl::fromEncoded(bare.trimmed().toUtf8()), line);
    }
    return lines.join('\n');
}

// The four escapes that a dropped name may still carry, undone in this order.
QString UndoEscapes(QString text)
{
    text.replace(QLatin1String("%5b"), QLatin1String("["));
    text.replace(QLatin1String("%5d"), QLatin1String("]"));
    text.replace(QLatin1String("%20"), QLatin1String(" "));
    text.replace(QLatin1String("%5c"), QLatin1String("/"));
    return text;
}

} // namespace

WListView::WListView(QWidget* parent, const char* name) : QTreeWidget(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    setRootIsDecorated(false);
    setAllColumnsShowFocus(true);
    setAcceptDrops(true);
    setSortingEnabled(true);
    sortByColumn(0, Qt::AscendingOrder);
    header()->setSectionResizeMode(QHeaderView::Interactive);
}

bool WListView::CanDecode(const QMimeData* mime)
{
    return mime && (mime->hasUrls() || mime->hasText());
}

QString WListView::DroppedText(const QMimeData* mime)
{
    if (!CanDecode(mime))
        return {};
    // The URL list is the exact form of a file drag; the text is the fallback.
    const QString text = mime->hasUrls() ? TextOfUrls(mime->urls()) : TextWithLocalPaths(mime->text());
    return UndoEscapes(text);
}

void WListView::dragEnterEvent(QDragEnterEvent* event)
{
    if (CanDecode(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void WListView::dragMoveEvent(QDragMoveEvent* event)
{
    // The base class would refuse a drop between rows of a model that takes
    // no drops; this list takes the whole drag wherever it lands.
    if (CanDecode(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void WListView::dropEvent(QDropEvent* event)
{
    if (!CanDecode(event->mimeData())) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    emit DroppedFile(DroppedText(event->mimeData()));
}

void WListView::contextMenuEvent(QContextMenuEvent* event)
{
    QTreeWidgetItem* item = nullptr;
    QPoint global = event->globalPos();
    int column = -1;
    if (event->reason() == QContextMenuEvent::Keyboard) {
        // The menu key acts on the current row, with the menu at that row.
        item = currentItem();
        if (item) {
            const QRect rect = visualItemRect(item);
            global = viewport()->mapToGlobal(rect.center());
            column = currentColumn();
        }
    } else {
        item = itemAt(event->pos());
        if (item)
            column = columnAt(event->pos().x());
    }
    event->accept();
    emit RightButtonClicked(item, global, column);
}
