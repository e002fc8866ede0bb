// The skins as the build installs them: every sheet parses, every image it
// names exists and renders, and the control bar's look follows its buttons'
// state. That the committed skins are what the generators write is
// tst_SkinsGenerated's part.

#include <QtSvg>
#include <QtTest>
#include <QtWidgets>
#include <memory>

#include "CLS_PlayerToolButton.h"
#include "CLS_WgtPlayerControlBar.h"
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
    // skin itself that renders. What the images show is the generators' part.
    void sheetsParseAndTheirImagesRender()
    {
        static const QRegularExpression reUrl(QStringLiteral("url\\(\\s*([^)\\s]+)\\s*\\)"));
        const QStringList lstSkins = Skins();
        QVERIFY(lstSkins.size() > 1);
        for (const QString& skin : lstSkins) {
            int iImages = 0;
            for (const QString& qstrFile : SkinFiles(skin, QStringLiteral("*.qss"))) {
                const QString qstrSheet = ReadText(SkinRoot(skin) + qstrFile);
                QWidget widget;
                widget.setStyleSheet(qstrSheet);
                widget.ensurePolished();
                QVERIFY2(g_lstWarnings.isEmpty(),
                         qPrintable(skin + '/' + qstrFile + ": " + g_lstWarnings.join('\n')));
                for (auto it = reUrl.globalMatch(qstrSheet); it.hasNext(); ++iImages) {
                    const QString qstrUrl = it.next().captured(1);
                    QVERIFY2(qstrUrl.startsWith(SkinRoot(skin)) && QSvgRenderer(qstrUrl).isValid(),
                             qPrintable(qstrFile + ": " + qstrUrl));
                }
            }
            QVERIFY(iImages > 0);
        }
        QVERIFY2(g_lstWarnings.isEmpty(), qPrintable(g_lstWarnings.join(QLatin1Char('\n'))));
    }

    // The control bar under each skin's sheet: a button's icon follows its
    // "state" and comes back with it, and a disabled control looks different.
    // The top bar's maximise button is the dialog test's part.
    void controlsFollowStateAndEnabled()
    {
        for (const QString& skin : Skins()) {
            CLS_WgtPlayerControlBar bar;
            bar.setStyleSheet(ReadText(SkinRoot(skin) + "ModuleKoPlayer/qss/ModuleKoPlayer.qss"));
            bar.resize(900, 84);
            bar.show();
            QVERIFY(QTest::qWaitForWindowExposed(&bar));
            for (const QString button :
                 {"toolButton_play", "toolButton_sound", "toolButton_stepup"}) {
                auto* pButton = bar.findChild<CLS_PlayerToolButton*>(button);
                const QImage imgStart = pButton->grab().toImage();
                if (button != QLatin1String("toolButton_stepup")) {
                    pButton->SetState(1);
                    QVERIFY2(pButton->grab().toImage() != imgStart,
                             qPrintable(skin + ' ' + button));
                    pButton->SetState(0);
                    QCOMPARE(pButton->grab().toImage(), imgStart);
                }
                pButton->setEnabled(false);
                QVERIFY2(pButton->grab().toImage() != imgStart, qPrintable(skin + ' ' + button));
            }
        }
        QVERIFY2(g_lstWarnings.isEmpty(), qPrintable(g_lstWarnings.join(QLatin1Char('\n'))));
    }

private:
    std::unique_ptr<QuillTest::ScopedWorkDir> m_pWorkDir;
};

QTEST_MAIN(tst_Skins)
#include "tst_Skins.moc"
