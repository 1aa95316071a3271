#include "TarnwickApplication.h"

#include "MainWindow.h"

#include <QApplication>

using namespace Qt::StringLiterals;

int runTarnwick(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"Tarnwick"_s);
    QApplication::setApplicationVersion(QStringLiteral(TARNWICK_VERSION));
    QApplication::setOrganizationName(u"Tarnwick"_s);

    MainWindow window;
    window.show();
    return QApplication::exec();
}
