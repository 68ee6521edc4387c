// Timing shared by the Qt-based benchmarks.
#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <functional>

// The best of `reps` runs of `run` in seconds, or -1 when a run fails.
inline double BestSeconds(int reps, const std::function<bool()>& run)
{
    double best = 1e30;
    for (int i = 0; i < reps; ++i) {
        QElapsedTimer timer;
        timer.start();
        if (!run())
            return -1;
        best = std::min(best, timer.nsecsElapsed() / 1e9);
    }
    return best;
}
