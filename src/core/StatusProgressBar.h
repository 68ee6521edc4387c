#pragma once

#include <QProgressBar>

// The progress bar in the main window's status bar, shown while a package is
// saved. Its text is the share done with one decimal, a percent sign and a
// blank ("33.3% "), or empty for a negative progress.
class StatusProgressBar : public QProgressBar
{
    Q_OBJECT
public:
    explicit StatusProgressBar(QWidget* parent = nullptr, const char* name = nullptr);

    // Computes the text for `progress` of `totalSteps` into `indicator`;
    // true when it differs from the text of the previous call.
    bool setIndicator(QString& indicator, int progress, int totalSteps);

    QString text() const override;

private:
    QString m_indicator;
};
