#include "core/StatusProgressBar.h"

StatusProgressBar::StatusProgressBar(QWidget* parent, const char* name) : QProgressBar(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    setAlignment(Qt::AlignCenter);
    setTextVisible(true);
}

namespace {

QString FormatIndicator(int progress, int totalSteps)
{
    if (progress < 0 || totalSteps <= 0)
        return QString();
    return QString::asprintf("%.1f", 100.0 * progress / totalSteps) + "% ";
}

} // namespace

bool StatusProgressBar::setIndicator(QString& indicator, int progress, int totalSteps)
{
    indicator = FormatIndicator(progress, totalSteps);
    const bool changed = indicator != m_indicator;
    m_indicator = indicator;
    return changed;
}

QString StatusProgressBar::text() const
{
    return FormatIndicator(value() - minimum(), maximum() - minimum());
}
