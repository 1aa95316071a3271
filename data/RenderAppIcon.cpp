// Build-time tool: renders the drawn application icon into the PNG files a desktop installs.
//
//   RenderAppIcon hicolor <dir> <name>   writes <dir>/<N>x<N>/apps/<name>.png for the usual theme sizes
//   RenderAppIcon iconset <dir>          writes <dir>/icon_<N>x<N>[@2x].png, the input of macOS iconutil
//
// Exits 0 when every file was written, 1 with a message on standard error otherwise.

#include "AppIcon.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QString>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

bool writeScaled(const QImage& master, int side, const QString& path)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    const QImage image
        = side == master.width() ? master : master.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image.save(path, "PNG");
}

bool writeHicolor(const QImage& master, const QString& dir, const QString& name)
{
    for (int side : { 16, 22, 24, 32, 48, 64, 128, 256, 512 }) {
        const QString size = QString::number(side);
        if (!writeScaled(master, side, dir + u'/' + size + u'x' + size + u"/apps/"_s + name + u".png"_s))
            return false;
    }
    return true;
}

bool writeIconset(const QImage& master, const QString& dir)
{
    for (int side : { 16, 32, 128, 256, 512 }) {
        const QString size = QString::number(side);
        const QString base = dir + u"/icon_"_s + size + u'x' + size;
        if (!writeScaled(master, side, base + u".png"_s))
            return false;
        // The 512 point @2x image would need 1024 pixels; the drawing is made at 512, so it stops there.
        if (side < 512 && !writeScaled(master, side * 2, base + u"@2x.png"_s))
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QImage master = drawFallbackAppIcon();
    bool written = false;
    if (arguments.size() == 4 && arguments.at(1) == u"hicolor"_s)
        written = writeHicolor(master, arguments.at(2), arguments.at(3));
    else if (arguments.size() == 3 && arguments.at(1) == u"iconset"_s)
        written = writeIconset(master, arguments.at(2));
    else {
        std::fputs("usage: RenderAppIcon hicolor <dir> <name> | iconset <dir>\n", stderr);
        return 1;
    }
    if (!written) {
        std::fputs("RenderAppIcon: could not write the icon files\n", stderr);
        return 1;
    }
    return 0;
}
