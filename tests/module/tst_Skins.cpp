// The skins as the build installs them: every sheet parses, every image it
// names exists and renders, and the look follows the "state" and "blMax"
// properties and the enabled state. That the committed skins are what the
// generators write is tst_SkinsGenerated's part.

#include <QtSvg>
#include <QtTest>
#include <QtWidgets>
#include <memory>

#include "QuillTestSupport.h"

namespace {

QStringList g_lstWarnings;
QtMessageHandler g_pPreviousHandler = nullptr;

void CollectWarnings(QtMsgType _type, const QMessageLogContext& _context, const QString& _qstrMsg)
{
    // Qt reports an unknown style sheet property at debug level only; the
    // offscreen platform's own messages are not the sheets'.
    const bool blNoise = _qstrMsg.contains(QLatin1String("propagateSizeHints")) ||
                         _qstrMsg.contains(QLatin1String("XDG_RUNTIME_DIR"));
    if (!blNoise && (_type > QtDebugMsg || _qstrMsg.startsWith(QLatin1String("Unknown property"))))
        g_lstWarnings << _qstrMsg;
    if (g_pPreviousHandler) g_pPreviousHandler(_type, _context, _qstrMsg);
}

QString ReadText(const QString& _qstrPath)
{
    return QString::fromUtf8(QuillTest::ReadFile(_qstrPath));
}

// Every skin the build installs.
QStringList Skins()
{
    return QDir(QStringLiteral("./resource/skin")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

QString SkinRoot(const QString& _qstrSkin)
{
    return QStringLiteral("./resource/skin/") + _qstrSkin + QLatin1Char('/');
}

// Files of a skin (the working directory links the installed tree), sorted.
QStringList SkinFiles(const QString& _qstrSkin, const QString& _qstrFilter)
{
    const QDir root(QDir::cleanPath(QDir::current().absoluteFilePath(SkinRoot(_qstrSkin))));
    QStringList lstFiles;
    QDirIterator it(root.path(), {_qstrFilter}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        lstFiles << root.relativeFilePath(it.next());
    lstFiles.sort();
    return lstFiles;
}

void Repolish(QWidget* _pWidget)
{
    _pWidget->style()->unpolish(_pWidget);
    _pWidget->style()->polish(_pWidget);
}

}  // namespace

class tst_Skins : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Sheets name their images relative to the working directory, as the
        // player runs: the test runs in one that holds the installed resources.
        m_pWorkDir = std::make_unique<QuillTest::ScopedWorkDir>();
        QVERIFY(m_pWorkDir->LinkFromBin(QStringLiteral("resource")));
        g_pPreviousHandler = qInstallMessageHandler(CollectWarnings);
    }

    void cleanupTestCase() { qInstallMessageHandler(g_pPreviousHandler); }
    void init() { g_lstWarnings.clear(); }
    // Qt parses every sheet without a complaint; every url() is an image of the
    // skin itself that renders and shows something at icon size.
    void sheetsParseAndTheirImagesRender()
    {
        static const QRegularExpression reUrl(QStringLiteral("url\\(\\s*([^)\\s]+)\\s*\\)"));
        const QStringList lstSkins = Skins();
        QVERIFY(lstSkins.size() > 1);
        for (const QString& skin : lstSkins) {
            QSet<QString> setUsed;
            for (const QString& qstrFile : SkinFiles(skin, QStringLiteral("*.qss"))) {
                const QString qstrSheet = ReadText(SkinRoot(skin) + qstrFile);
                QWidget widget;
                widget.setStyleSheet(qstrSheet);
                widget.ensurePolished();
                QVERIFY2(g_lstWarnings.isEmpty(),
                         qPrintable(skin + QLatin1Char('/') + qstrFile + QStringLiteral(": ") +
                                    g_lstWarnings.join(QLatin1Char('\n'))));
                for (auto it = reUrl.globalMatch(qstrSheet); it.hasNext();) {
                    const QString qstrUrl = it.next().captured(1);
                    QVERIFY2(qstrUrl.startsWith(SkinRoot(skin)) && QFileInfo(qstrUrl).isFile(),
                             qPrintable(qstrFile + QStringLiteral(": ") + qstrUrl));
                    setUsed << QDir::cleanPath(qstrUrl);
                }
            }
            QVERIFY(!setUsed.isEmpty());
            for (const QString& qstrPath : qAsConst(setUsed)) {
                QSvgRenderer renderer(qstrPath);
                QVERIFY2(renderer.isValid(), qPrintable(qstrPath));
                QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
                image.fill(Qt::transparent);
                QPainter painter(&image);
                renderer.render(&painter);
                painter.end();
                int iInked = 0;
                for (int i = 0; i < 400; ++i)
                    iInked += qAlpha(image.pixel(i % 20, i / 20)) > 128 ? 1 : 0;
                QVERIFY2(iInked >= 10, qPrintable(qstrPath + QStringLiteral(" is blank")));
            }
        }
        QVERIFY2(g_lstWarnings.isEmpty(), qPrintable(g_lstWarnings.join(QLatin1Char('\n'))));
    }

    void lookFollowsStateAndEnabled_data()
    {
        QTest::addColumn<QString>("skin");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("property");
        for (const QString& s : Skins()) {
            QTest::newRow(qPrintable(s + " play")) << s << "toolButton_play"
                                                   << "state";
            QTest::newRow(qPrintable(s + " sound")) << s << "toolButton_sound"
                                                    << "state";
            QTest::newRow(qPrintable(s + " step")) << s << "toolButton_stepup" << QString();
            QTest::newRow(qPrintable(s + " maximise")) << s << "pushButton_big"
                                                       << "blMax";
        }
    }

    // As the control bar and the top bar hold them: the icon changes with the
    // property once re-polished and comes back with the start value ("state" 0,
    // "blMax" false); the player's controls look different when disabled (the
    // window buttons never are).
    void lookFollowsStateAndEnabled()
    {
        QFETCH(QString, skin);
        QFETCH(QString, button);
        QFETCH(QString, property);
        const bool blTopBar = property == QLatin1String("blMax");
        QWidget root;
        auto* pContainer = new QWidget(&root);
        pContainer->setObjectName(blTopBar ? "groupBox" : "bottomBar");
        auto* pLayout = new QHBoxLayout(pContainer);
        QAbstractButton* pButton = blTopBar
                                       ? static_cast<QAbstractButton*>(new QPushButton(pContainer))
                                       : new QToolButton(pContainer);
        pButton->setObjectName(button);
        pLayout->addWidget(pButton);
        const QByteArray name = property.toLatin1();
        const QVariant qvarStart = blTopBar ? QVariant(false) : QVariant(0);
        if (!name.isEmpty()) pButton->setProperty(name.constData(), qvarStart);
        root.setStyleSheet(
            ReadText(SkinRoot(skin) + (blTopBar ? "ModuleKoPlayer/qss/TopBar.qss"
                                                : "ModuleKoPlayer/qss/ModuleKoPlayer.qss")));
        root.show();
        QVERIFY(QTest::qWaitForWindowExposed(&root));
        const QImage imgStart = pButton->grab().toImage();
        if (!name.isEmpty()) {
            pButton->setProperty(name.constData(), blTopBar ? QVariant(true) : QVariant(1));
            Repolish(pButton);
            QVERIFY2(pButton->grab().toImage() != imgStart, "the property changes nothing");
            pButton->setProperty(name.constData(), qvarStart);
            Repolish(pButton);
            QCOMPARE(pButton->grab().toImage(), imgStart);
        }
        if (!blTopBar) {
            pButton->setEnabled(false);
            QVERIFY2(pButton->grab().toImage() != imgStart, "disabled looks like enabled");
        }
        QVERIFY2(g_lstWarnings.isEmpty(), qPrintable(g_lstWarnings.join(QLatin1Char('\n'))));
    }

private:
    std::unique_ptr<QuillTest::ScopedWorkDir> m_pWorkDir;
};

QTEST_MAIN(tst_Skins)
#include "tst_Skins.moc"
