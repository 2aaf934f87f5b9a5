// The least that a program of this kind can be: a main window with an empty document area, shown once. The floor for
// the figures of figures.py. Prints the milliseconds since the process began and its peak memory in KiB.
#include "bench/ProcessFigures.h"

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QTimer>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.setCentralWidget(new QMdiArea);
    window.resize(1000, 700);
    window.show();
    QTimer::singleShot(0, [] {
        plinket3::PrintFigure("ready", plinket3::ProcessMilliseconds());
        QApplication::quit();
    });
    return QApplication::exec();
}
