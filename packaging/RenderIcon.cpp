// Renders the application icon into the PNG sizes the icon theme wants:
//   quill_render_icon ICON.svg OUTDIR SIZE...  ->  OUTDIR/<SIZE>x<SIZE>/quillplayer.png
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s ICON.svg OUTDIR SIZE...\n", argv[0]);
        return 2;
    }
    QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
    if (!renderer.isValid()) {
        std::fprintf(stderr, "cannot read %s\n", argv[1]);
        return 1;
    }
    for (int i = 3; i < argc; ++i) {
        const int iSize = QString::fromLatin1(argv[i]).toInt();
        QImage image(iSize, iSize, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        painter.end();
        const QString qstrDir = QStringLiteral("%1/%2x%2").arg(QString::fromLocal8Bit(argv[2])).arg(iSize);
        if (!QDir().mkpath(qstrDir) || !image.save(qstrDir + QStringLiteral("/quillplayer.png"))) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(qstrDir));
            return 1;
        }
    }
    return 0;
}
