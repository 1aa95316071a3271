#include "MainWindow.h"

using namespace Qt::StringLiterals;

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
{
    setObjectName(u"mainWindow"_s);
    setWindowTitle(u"Tarnwick"_s);
    setMinimumSize(1080, 700);
}
