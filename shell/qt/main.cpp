// zelkfilter: the desktop application.
#include <QApplication>

#include "shell/qt/qtdesktop.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("zelkfilter");
    QApplication::setApplicationDisplayName("ZELK Filter Design");
    zelk::qt::QtDesktop desktop;
    zelk::qt::DesignFrame* frame = desktop.start();
    frame->show();
    int rc = app.exec();
    zelk::setdesktop(nullptr);
    delete frame;
    return rc;
}
