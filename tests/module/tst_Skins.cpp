// The dark and light skins as the build installs them: every sheet parses
// without a Qt warning on a tree of the widgets it selects, every image it
// names exists and renders, both skins style the same things, and the look
// follows the "state" and "blMax" properties and the enabled state.

#include <QtSvg>
#include <QtTest>
#include <QtWidgets>
#include <memory>

#include "QuillTestSupport.h"

namespace {

const QStringList kSkins = {QStringLiteral("dark"), QStringLiteral("light")};

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
    QFile file(_qstrPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
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

struct Rule
{
    QStringList lstSelectors;
    QList<QPair<QString, QString>> lstDeclarations;  // property, value
};

QList<Rule> ParseSheet(QString _qstrText)
{
    static const QRegularExpression reComment(QStringLiteral("/\\*.*?\\*/"),
                                              QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression reBlock(QStringLiteral("([^{}]+)\\{([^{}]*)\\}"));
    _qstrText.remove(reComment);
    QList<Rule> lstRules;
    for (auto it = reBlock.globalMatch(_qstrText); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        Rule rule;
        for (const QString& qstrSelector : match.captured(1).split(QLatin1Char(',')))
            rule.lstSelectors << qstrSelector.simplified();
        for (const QString& qstrDecl : match.captured(2).split(QLatin1Char(';'))) {
            const int iColon = qstrDecl.indexOf(QLatin1Char(':'));
            if (iColon > 0)
                rule.lstDeclarations.append(
                    {qstrDecl.left(iColon).trimmed(), qstrDecl.mid(iColon + 1).trimmed()});
        }
        lstRules << rule;
    }
    return lstRules;
}

// "selector { property;property" per selector: what a sheet styles.
QStringList Styled(const QString& _qstrPath)
{
    QStringList lst;
    for (const Rule& rule : ParseSheet(ReadText(_qstrPath))) {
        QStringList lstProperties;
        for (const auto& decl : rule.lstDeclarations)
            lstProperties << decl.first;
        for (const QString& qstrSelector : rule.lstSelectors)
            lst << qstrSelector + QStringLiteral(" { ") + lstProperties.join(QLatin1Char(';'));
    }
    return lst;
}

QWidget* CreateWidget(const QString& _qstrType, QWidget* _pParent)
{
    if (_qstrType == QLatin1String("QFileDialog")) {
        auto* pDialog = new QFileDialog(_pParent);
        pDialog->setOption(QFileDialog::DontUseNativeDialog);
        pDialog->setWindowFlags(Qt::Widget);
        return pDialog;
    }
    if (_qstrType == QLatin1String("QMenu")) {
        auto* pMenu = new QMenu(_pParent);
        pMenu->setWindowFlags(Qt::Widget);
        pMenu->addAction(QStringLiteral("one"));
        pMenu->addSeparator();
        pMenu->addAction(QStringLiteral("two"))->setEnabled(false);
        return pMenu;
    }
    if (_qstrType == QLatin1String("QMessageBox"))
        return new QMessageBox(QMessageBox::NoIcon, QStringLiteral("t"), QStringLiteral("text"),
                               QMessageBox::Ok | QMessageBox::Cancel, _pParent, Qt::Widget);
    if (_qstrType == QLatin1String("QComboBox")) {
        auto* pCombo = new QComboBox(_pParent);
        pCombo->addItems({QStringLiteral("1X"), QStringLiteral("2X")});
        return pCombo;
    }
    if (_qstrType == QLatin1String("QListWidget")) {
        auto* pList = new QListWidget(_pParent);
        pList->addItems({QStringLiteral("a.mp4"), QStringLiteral("b.sdv")});
        return pList;
    }
    if (_qstrType == QLatin1String("QSlider")) return new QSlider(Qt::Horizontal, _pParent);
    if (_qstrType == QLatin1String("QScrollBar")) return new QScrollBar(Qt::Vertical, _pParent);
    if (_qstrType == QLatin1String("QLabel")) return new QLabel(QStringLiteral("00:00"), _pParent);
    if (_qstrType == QLatin1String("QPushButton")) return new QPushButton(_pParent);
    if (_qstrType == QLatin1String("QToolButton")) return new QToolButton(_pParent);
    if (_qstrType == QLatin1String("QTextEdit"))
        return new QTextEdit(QStringLiteral("a"), _pParent);
    if (_qstrType == QLatin1String("QLineEdit"))
        return new QLineEdit(QStringLiteral("a"), _pParent);
    if (_qstrType == QLatin1String("QGroupBox")) return new QGroupBox(_pParent);
    if (_qstrType == QLatin1String("QMainWindow")) return new QMainWindow(_pParent, Qt::Widget);
    if (_qstrType == QLatin1String("QTreeView")) return new QTreeView(_pParent);
    if (_qstrType == QLatin1String("QSplitter")) return new QSplitter(_pParent);
    if (_qstrType == QLatin1String("QDialogButtonBox"))
        return new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, _pParent);
    if (_qstrType.endsWith(QLatin1String("ItemView")) || _qstrType == QLatin1String("QListView"))
        return new QListView(_pParent);
    return new QWidget(_pParent);
}

// A widget for each compound of each selector ("Type#name[prop="v"]"), nested
// as the selector nests them; an existing descendant is reused (sub-widgets of
// combo boxes and dialogs). Returns the attribute values selected on, per
// widget, and checks each "qproperty-" of a rule really lands on its widget.
QMultiHash<QWidget*, QPair<QByteArray, QString>> BuildTree(QWidget* _pRoot,
                                                           const QList<Rule>& _lstRules)
{
    static const QRegularExpression reCompound(
        QStringLiteral("^(\\w*)(?:#(\\w+))?((?:\\[[^\\]]*\\])*)"));
    static const QRegularExpression reAttribute(QStringLiteral("\\[(\\w+)=\"([^\"]*)\"\\]"));
    QMultiHash<QWidget*, QPair<QByteArray, QString>> hashAttributes;
    for (const Rule& rule : _lstRules) {
        for (const QString& qstrSelector : rule.lstSelectors) {
            QWidget* pWidget = _pRoot;
            for (const QString& qstrPart :
                 qstrSelector.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
                const QRegularExpressionMatch match = reCompound.match(qstrPart);
                const QString qstrType = match.captured(1);
                const QString qstrName = match.captured(2);
                if (qstrType == QLatin1String("QToolTip")) break;
                QWidget* pFound = nullptr;
                for (QWidget* pChild : pWidget->findChildren<QWidget*>()) {
                    if ((qstrType.isEmpty() || pChild->inherits(qPrintable(qstrType))) &&
                        (qstrName.isEmpty() || pChild->objectName() == qstrName)) {
                        pFound = pChild;
                        break;
                    }
                }
                if (!pFound) {
                    pFound = CreateWidget(qstrType, pWidget);
                    pFound->setObjectName(qstrName);
                    pFound->setGeometry(0, 0, 120, 40);
                }
                pWidget = pFound;
                for (auto it = reAttribute.globalMatch(match.captured(3)); it.hasNext();) {
                    const auto attr = it.next();
                    hashAttributes.insert(pWidget, {attr.captured(1).toLatin1(), attr.captured(2)});
                }
            }
            for (const auto& decl : rule.lstDeclarations) {
                if (!decl.first.startsWith(QLatin1String("qproperty-"))) continue;
                // Qt drops an unknown name or a failed conversion silently.
                pWidget->ensurePolished();
                const QByteArray name = decl.first.mid(10).toLatin1();
                const QMetaProperty property = pWidget->metaObject()->property(
                    pWidget->metaObject()->indexOfProperty(name.constData()));
                const QVariant qvarValue = pWidget->property(name.constData());
                const QString qstrActual =
                    property.isEnumType()
                        ? QString::fromLatin1(property.enumerator().valueToKey(qvarValue.toInt()))
                        : qvarValue.toString();
                QString qstrWritten = decl.second;
                qstrWritten.remove(QLatin1Char('"'));
                if (qstrActual != qstrWritten)
                    g_lstWarnings << qstrSelector + QLatin1Char(' ') + decl.first +
                                         QStringLiteral(" is ") + qstrActual;
            }
        }
    }
    return hashAttributes;
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
    void initTestCase();
    void cleanupTestCase() { qInstallMessageHandler(g_pPreviousHandler); }
    void init() { g_lstWarnings.clear(); }
    void bothSkinsStyleTheSameThings();
    void sheetsLoadWithoutWarnings_data();
    void sheetsLoadWithoutWarnings();
    void imagesExistAndRender();
    void lookFollowsStateAndEnabled_data();
    void lookFollowsStateAndEnabled();

private:
    std::unique_ptr<QuillTest::ScopedWorkDir> m_pWorkDir;
};

void tst_Skins::initTestCase()
{
    // Sheets name their images relative to the working directory, as the
    // player runs: the test runs in one that holds the installed resources.
    m_pWorkDir = std::make_unique<QuillTest::ScopedWorkDir>();
    QVERIFY(m_pWorkDir->LinkFromBin(QStringLiteral("resource")));
    g_pPreviousHandler = qInstallMessageHandler(CollectWarnings);
}

// The same files in both skins (the fixed ones the widgets load among them),
// the same selectors with the same properties, and a high-DPI variant styles
// what its plain sheet styles.
void tst_Skins::bothSkinsStyleTheSameThings()
{
    const QStringList lstFiles = SkinFiles(kSkins[0], QStringLiteral("*.*"));
    QCOMPARE(SkinFiles(kSkins[1], QStringLiteral("*.*")), lstFiles);
    for (const char* pszFile :
         {"ModuleKoPlayer/qss/ModuleKoPlayer.qss", "ModuleKoPlayer/qss/TopBar.qss",
          "ModuleKoPlayer/qss/ToolBar.qss", "ModuleKoPlayer/qss/CLS_DlgQuillPlayer.qss",
          "WgtMsgBox/qss/CLS_WgtMsgBox.qss", "Common/Base.qss"})
        QVERIFY2(lstFiles.contains(QLatin1String(pszFile)), pszFile);

    static const QRegularExpression reVariant(QStringLiteral("_\\d+(\\.\\d+)?K\\.qss$"));
    for (const QString& qstrFile : SkinFiles(kSkins[0], QStringLiteral("*.qss"))) {
        const QStringList lstDark = Styled(SkinRoot(kSkins[0]) + qstrFile);
        const QStringList lstLight = Styled(SkinRoot(kSkins[1]) + qstrFile);
        QVERIFY2(!lstDark.isEmpty(), qPrintable(qstrFile));
        for (const QString& qstrRule : lstDark)
            QVERIFY2(lstLight.contains(qstrRule),
                     qPrintable(QStringLiteral("light lacks ") + qstrRule));
        for (const QString& qstrRule : lstLight)
            QVERIFY2(lstDark.contains(qstrRule),
                     qPrintable(QStringLiteral("dark lacks ") + qstrRule));
        if (qstrFile.contains(reVariant)) {
            const QString qstrPlain = QString(qstrFile).replace(reVariant, QStringLiteral(".qss"));
            QCOMPARE(lstDark, Styled(SkinRoot(kSkins[0]) + qstrPlain));
        }
    }
}

void tst_Skins::sheetsLoadWithoutWarnings_data()
{
    QTest::addColumn<QString>("text");
    for (const QString& qstrSkin : kSkins) {
        const QString qstrCommon = ReadText(SkinRoot(qstrSkin) + QStringLiteral("Common/Base.qss"));
        for (const QString& qstrFile : SkinFiles(qstrSkin, QStringLiteral("*.qss"))) {
            // A view's sheet is installed after the shared one.
            const QString qstrPrefix =
                qstrFile.contains(QLatin1String("/qss/CLS_")) ? qstrCommon : QString();
            QTest::newRow(qPrintable(qstrSkin + QLatin1Char('/') + qstrFile))
                << qstrPrefix + ReadText(SkinRoot(qstrSkin) + qstrFile);
        }
    }
}

void tst_Skins::sheetsLoadWithoutWarnings()
{
    QFETCH(QString, text);
    const QList<Rule> lstRules = ParseSheet(text);
    QVERIFY(!lstRules.isEmpty());
    QWidget root;
    root.resize(900, 300);
    root.setStyleSheet(text);
    const auto hashAttributes = BuildTree(&root, lstRules);
    root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&root));
    root.grab();
    // Every look: each attribute value selected on, then all disabled.
    for (auto it = hashAttributes.constBegin(); it != hashAttributes.constEnd(); ++it) {
        it.key()->setProperty(it.value().first.constData(), it.value().second);
        Repolish(it.key());
        root.grab();
    }
    for (QWidget* pWidget : root.findChildren<QWidget*>())
        pWidget->setEnabled(false);
    root.grab();
    QVERIFY2(g_lstWarnings.isEmpty(), qPrintable(g_lstWarnings.join(QLatin1Char('\n'))));
}

// Every url() is an image of the skin itself, and every image is used,
// renders and shows something at icon size.
void tst_Skins::imagesExistAndRender()
{
    static const QRegularExpression reUrl(QStringLiteral("url\\(\\s*([^)\\s]+)\\s*\\)"));
    for (const QString& skin : kSkins) {
        QSet<QString> setUsed;
        for (const QString& qstrFile : SkinFiles(skin, QStringLiteral("*.qss"))) {
            for (auto it = reUrl.globalMatch(ReadText(SkinRoot(skin) + qstrFile)); it.hasNext();) {
                const QString qstrUrl = it.next().captured(1);
                QVERIFY2(qstrUrl.startsWith(SkinRoot(skin)) && QFileInfo(qstrUrl).isFile(),
                         qPrintable(qstrFile + QStringLiteral(": ") + qstrUrl));
                setUsed << QDir::cleanPath(qstrUrl);
            }
        }
        const QStringList lstImages = SkinFiles(skin, QStringLiteral("*.svg"));
        QVERIFY(!lstImages.isEmpty());
        for (const QString& qstrImage : lstImages) {
            const QString qstrPath = SkinRoot(skin) + qstrImage;
            QVERIFY2(setUsed.contains(QDir::cleanPath(qstrPath)),
                     qPrintable(qstrPath + QStringLiteral(" is unused")));
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

void tst_Skins::lookFollowsStateAndEnabled_data()
{
    QTest::addColumn<QString>("skin");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("property");
    for (const QString& s : kSkins) {
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
void tst_Skins::lookFollowsStateAndEnabled()
{
    QFETCH(QString, skin);
    QFETCH(QString, button);
    QFETCH(QString, property);
    const bool blTopBar = property == QLatin1String("blMax");
    QWidget root;
    auto* pContainer = new QWidget(&root);
    pContainer->setObjectName(blTopBar ? "groupBox" : "bottomBar");
    auto* pLayout = new QHBoxLayout(pContainer);
    QAbstractButton* pButton = blTopBar ? static_cast<QAbstractButton*>(new QPushButton(pContainer))
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

QTEST_MAIN(tst_Skins)
#include "tst_Skins.moc"
