#include "app/DCreateShip.h"

#include <QApplication>

#include <memory>

int main(int argc, char** argv)
{
    // The toolkit takes its own options out of the vector first.
    QApplication application(argc, argv);
    const QStringList entries = SplitArguments(argc, argv);

    int exitCode = 0;
    {
        DCreateShip window;
        if (window.ParseCommandLine(entries)) {
            window.StartTextLoad();
            window.show();
            exitCode = application.exec();
        }
    }
    return exitCode;
}
