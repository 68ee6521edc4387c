// Saves a picture of the whole X screen as PNG: the smoke test's screenshot.
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdio>

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: grab_screen OUT.png\n");
        return 2;
    }
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return 1;
    const QPixmap shot = screen->grabWindow(0);
    return !shot.isNull() && shot.save(QString::fromLocal8Bit(argv[1]), "PNG") ? 0 : 1;
}
