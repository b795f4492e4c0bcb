// Draws an icon in several sizes: orvel_icon DRAWING.svg FOLDER SIZE... writes FOLDER/SIZExSIZE/DRAWING.png
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QSvgRenderer drawing;
    if (arguments.size() < 4 || !drawing.load(arguments[1])) {
        return 1;
    }
    const QString name = QFileInfo(arguments[1]).completeBaseName();
    for (const QString &size : arguments.mid(3)) {
        const QString folder = QStringLiteral("%1/%2x%2").arg(arguments[2], size);
        QImage picture(size.toInt(), size.toInt(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        drawing.render(&painter);
        painter.end();
        if (!QDir().mkpath(folder) || !picture.save(QStringLiteral("%1/%2.png").arg(folder, name))) {
            return 1;
        }
    }
    return 0;
}
