// The dark and light skins as the build installs them: every sheet parses
// without a Qt warning on a tree of the widgets it selects, every image it
// names exists and renders, both skins select the same things, and the
// look really follows the "state" and "blMax" properties and the enabled
// state of the controls.

#include "QuillTestSupport.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSet>
#include <QSlider>
#include <QSplitter>
#include <QStyle>
#include <QSvgRenderer>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>
#include <memory>

namespace {

const QStringList kSkins = {QStringLiteral("dark"), QStringLiteral("light")};

// Messages of the offscreen platform itself, not of a style sheet.
bool IsPlatformNoise(const QString& _qstrMessage)
{
    return _qstrMessage.contains(QLatin1String("propagateSizeHints")) ||
           _qstrMessage.contains(QLatin1String("XDG_RUNTIME_DIR"));
}

QStringList g_lstWarnings;
QtMessageHandler g_pPreviousHandler = nullptr;

void CollectWarnings(QtMsgType _type, const QMessageLogContext& _context, const QString& _qstrMessage)
{
    // The style sheet parser reports an unknown property at debug level only.
    const bool blUnknownProperty = _qstrMessage.startsWith(QLatin1String("Unknown property"));
    if ((blUnknownProperty || (_type != QtDebugMsg && _type != QtInfoMsg)) && !IsPlatformNoise(_qstrMessage))
        g_lstWarnings << _qstrMessage;
    if (g_pPreviousHandler)
        g_pPreviousHandler(_type, _context, _qstrMessage);
}

QString ReadText(const QString& _qstrPath)
{
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

struct Rule
{
    QStringList lstSelectors;
    QStringList lstProperties;
    QStringList lstValues;
    QStringList lstUrls;
};

QList<Rule> ParseSheet(const QString& _qstrText)
{
    QString qstrText = _qstrText;
    qstrText.remove(QRegularExpression(QStringLiteral("/\\*.*?\\*/"),
                                       QRegularExpression::DotMatchesEverythingOption));
    QList<Rule> lstRules;
    static const QRegularExpression reBlock(QStringLiteral("([^{}]+)\\{([^{}]*)\\}"));
    static const QRegularExpression reUrl(QStringLiteral("url\\(\\s*([^)\\s]+)\\s*\\)"));
    auto it = reBlock.globalMatch(qstrText);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        Rule rule;
        for (const QString& qstrSelector : match.captured(1).split(QLatin1Char(',')))
            rule.lstSelectors << qstrSelector.simplified();
        for (const QString& qstrDecl : match.captured(2).split(QLatin1Char(';'))) {
            const int iColon = qstrDecl.indexOf(QLatin1Char(':'));
            if (iColon > 0) {
                rule.lstProperties << qstrDecl.left(iColon).trimmed();
                rule.lstValues << qstrDecl.mid(iColon + 1).trimmed();
            }
        }
        auto itUrl = reUrl.globalMatch(match.captured(2));
        while (itUrl.hasNext())
            rule.lstUrls << itUrl.next().captured(1);
        lstRules << rule;
    }
    return lstRules;
}

// Installed files below resource/skin/<skin>, relative to that folder.
QStringList SkinFiles(const QString& _qstrSkin, const QStringList& _lstFilters)
{
    const QString qstrRoot = QuillTest::BinPath(QStringLiteral("resource/skin/") + _qstrSkin);
    QStringList lstFiles;
    QDirIterator it(qstrRoot, _lstFilters, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        lstFiles << QDir(qstrRoot).relativeFilePath(it.next());
    lstFiles.sort();
    return lstFiles;
}

// One compound of a selector: "QToolButton#toolButton_play[state="1"]:hover".
struct Compound
{
    QString qstrType;
    QString qstrName;
    QList<QPair<QByteArray, QString>> lstAttributes;
};

QList<Compound> ParseSelector(const QString& _qstrSelector)
{
    static const QRegularExpression reCompound(
        QStringLiteral("^([A-Za-z][A-Za-z0-9_]*)?(?:#([A-Za-z_][A-Za-z0-9_]*))?((?:\\[[^\\]]*\\])*)"));
    static const QRegularExpression reAttribute(QStringLiteral("\\[(\\w+)=\"([^\"]*)\"\\]"));
    QList<Compound> lstCompounds;
    for (const QString& qstrPart : _qstrSelector.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = reCompound.match(qstrPart);
        Compound compound;
        compound.qstrType = match.captured(1);
        compound.qstrName = match.captured(2);
        auto it = reAttribute.globalMatch(match.captured(3));
        while (it.hasNext()) {
            const QRegularExpressionMatch attr = it.next();
            compound.lstAttributes << qMakePair(attr.captured(1).toLatin1(), attr.captured(2));
        }
        lstCompounds << compound;
    }
    return lstCompounds;
}

QWidget* CreateWidget(const QString& _qstrType, QWidget* _pParent)
{
    if (_qstrType == QLatin1String("QLabel"))
        return new QLabel(QStringLiteral("00:00:00"), _pParent);
    if (_qstrType == QLatin1String("QPushButton"))
        return new QPushButton(_pParent);
    if (_qstrType == QLatin1String("QToolButton"))
        return new QToolButton(_pParent);
    if (_qstrType == QLatin1String("QComboBox")) {
        auto* pCombo = new QComboBox(_pParent);
        pCombo->addItems({QStringLiteral("1/2X"), QStringLiteral("1X"), QStringLiteral("2X")});
        return pCombo;
    }
    if (_qstrType == QLatin1String("QSlider")) {
        auto* pSlider = new QSlider(Qt::Horizontal, _pParent);
        pSlider->setRange(0, 100);
        pSlider->setValue(40);
        return pSlider;
    }
    if (_qstrType == QLatin1String("QListWidget")) {
        auto* pList = new QListWidget(_pParent);
        pList->addItems({QStringLiteral("a.mp4"), QStringLiteral("b.sdv")});
        return pList;
    }
    if (_qstrType == QLatin1String("QTextEdit"))
        return new QTextEdit(QStringLiteral("clip.mp4"), _pParent);
    if (_qstrType == QLatin1String("QLineEdit"))
        return new QLineEdit(QStringLiteral("text"), _pParent);
    if (_qstrType == QLatin1String("QGroupBox"))
        return new QGroupBox(_pParent);
    if (_qstrType == QLatin1String("QMainWindow")) {
        auto* pWindow = new QMainWindow(_pParent, Qt::Widget);
        return pWindow;
    }
    if (_qstrType == QLatin1String("QDialogButtonBox"))
        return new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, _pParent);
    if (_qstrType == QLatin1String("QFileDialog")) {
        auto* pDialog = new QFileDialog(_pParent);
        pDialog->setOption(QFileDialog::DontUseNativeDialog);
        pDialog->setWindowFlags(Qt::Widget);
        return pDialog;
    }
    if (_qstrType == QLatin1String("QMessageBox")) {
        auto* pBox = new QMessageBox(QMessageBox::NoIcon, QStringLiteral("t"), QStringLiteral("text"),
                                     QMessageBox::Ok | QMessageBox::Cancel, _pParent, Qt::Widget);
        pBox->setDefaultButton(QMessageBox::Ok);
        return pBox;
    }
    if (_qstrType == QLatin1String("QScrollBar"))
        return new QScrollBar(Qt::Vertical, _pParent);
    if (_qstrType == QLatin1String("QMenu")) {
        auto* pMenu = new QMenu(_pParent);
        pMenu->setWindowFlags(Qt::Widget);
        pMenu->addAction(QStringLiteral("one"));
        pMenu->addSeparator();
        pMenu->addAction(QStringLiteral("two"))->setEnabled(false);
        return pMenu;
    }
    if (_qstrType == QLatin1String("QTreeView"))
        return new QTreeView(_pParent);
    if (_qstrType == QLatin1String("QListView") || _qstrType == QLatin1String("QAbstractItemView"))
        return new QListView(_pParent);
    if (_qstrType == QLatin1String("QSplitter"))
        return new QSplitter(_pParent);
    return new QWidget(_pParent);
}

bool Inherits(QWidget* _pWidget, const QString& _qstrType)
{
    return _qstrType.isEmpty() || _pWidget->inherits(_qstrType.toLatin1().constData());
}

// The widget a compound stands for below _pParent: an existing one when a
// descendant of that class and name is there (sub-widgets of combo boxes
// and dialogs), else a new one.
QWidget* Ensure(QWidget* _pParent, const Compound& _compound)
{
    const QList<QWidget*> lstChildren = _pParent->findChildren<QWidget*>();
    for (QWidget* pChild : lstChildren) {
        if (Inherits(pChild, _compound.qstrType) &&
            (_compound.qstrName.isEmpty() || pChild->objectName() == _compound.qstrName))
            return pChild;
    }
    QWidget* pWidget = CreateWidget(_compound.qstrType, _pParent);
    pWidget->setObjectName(_compound.qstrName);
    pWidget->setGeometry(0, 0, 120, 40);
    return pWidget;
}

// A widget tree holding what every selector of the sheet names, with the
// attribute values it selects on recorded per widget.
struct SelectorTree
{
    std::unique_ptr<QWidget> pRoot;
    QHash<QWidget*, QList<QPair<QByteArray, QString>>> hashAttributes;
};

SelectorTree BuildTree(const QList<Rule>& _lstRules)
{
    SelectorTree tree;
    tree.pRoot = std::make_unique<QWidget>();
    tree.pRoot->resize(900, 300);
    for (const Rule& rule : _lstRules) {
        for (const QString& qstrSelector : rule.lstSelectors) {
            QWidget* pParent = tree.pRoot.get();
            for (const Compound& compound : ParseSelector(qstrSelector)) {
                if (compound.qstrType == QLatin1String("QToolTip"))
                    break;
                QWidget* pWidget = Ensure(pParent, compound);
                for (const auto& attr : compound.lstAttributes) {
                    if (!tree.hashAttributes[pWidget].contains(attr))
                        tree.hashAttributes[pWidget] << attr;
                }
                pParent = pWidget;
            }
        }
    }
    return tree;
}

void Repolish(QWidget* _pWidget)
{
    _pWidget->style()->unpolish(_pWidget);
    _pWidget->style()->polish(_pWidget);
    _pWidget->update();
}

// The properties a style sheet may set; anything else is silently ignored
// by Qt, so a misspelt name would go unnoticed.
const QSet<QString>& KnownProperties()
{
    static const QSet<QString> s_set = [] {
        const QStringList lst = {
            QStringLiteral("alternate-background-color"), QStringLiteral("background"),
            QStringLiteral("background-color"), QStringLiteral("background-image"),
            QStringLiteral("background-repeat"), QStringLiteral("background-position"),
            QStringLiteral("background-clip"), QStringLiteral("background-origin"),
            QStringLiteral("border"), QStringLiteral("border-top"), QStringLiteral("border-right"),
            QStringLiteral("border-bottom"), QStringLiteral("border-left"), QStringLiteral("border-color"),
            QStringLiteral("border-style"), QStringLiteral("border-width"), QStringLiteral("border-radius"),
            QStringLiteral("border-image"), QStringLiteral("color"), QStringLiteral("combobox-popup"),
            QStringLiteral("font"), QStringLiteral("font-family"), QStringLiteral("font-size"),
            QStringLiteral("font-style"), QStringLiteral("font-weight"), QStringLiteral("height"),
            QStringLiteral("width"), QStringLiteral("icon-size"), QStringLiteral("image"),
            QStringLiteral("image-position"), QStringLiteral("margin"), QStringLiteral("margin-top"),
            QStringLiteral("margin-right"), QStringLiteral("margin-bottom"), QStringLiteral("margin-left"),
            QStringLiteral("max-height"), QStringLiteral("max-width"), QStringLiteral("min-height"),
            QStringLiteral("min-width"), QStringLiteral("outline"), QStringLiteral("padding"),
            QStringLiteral("padding-top"), QStringLiteral("padding-right"), QStringLiteral("padding-bottom"),
            QStringLiteral("padding-left"), QStringLiteral("selection-background-color"),
            QStringLiteral("selection-color"), QStringLiteral("spacing"), QStringLiteral("subcontrol-origin"),
            QStringLiteral("subcontrol-position"), QStringLiteral("text-align"), QStringLiteral("top"),
            QStringLiteral("left"), QStringLiteral("right"), QStringLiteral("bottom"),
            QStringLiteral("position"), QStringLiteral("opacity")};
        return QSet<QString>(lst.begin(), lst.end());
    }();
    return s_set;
}

// A widget property set from a sheet ("qproperty-name: value") must exist
// on the class and really take the value: Qt drops a failed conversion
// without a word, and the parser reads some bare words (NoWrap) as values
// of its own.
void CheckWidgetProperty(const QString& _qstrType, const QString& _qstrProperty, const QString& _qstrWritten)
{
    const std::unique_ptr<QWidget> pWidget(CreateWidget(_qstrType, nullptr));
    const QMetaObject* pMeta = pWidget->metaObject();
    const int iIndex = pMeta->indexOfProperty(_qstrProperty.toLatin1().constData());
    QVERIFY2(iIndex >= 0 && pMeta->property(iIndex).isWritable(),
             qPrintable(_qstrType + QStringLiteral(" has no property ") + _qstrProperty));
    QString qstrValue = _qstrWritten;
    if (qstrValue.startsWith(QLatin1Char('"')))
        qstrValue = qstrValue.mid(1, qstrValue.size() - 2);
    pWidget->setObjectName(QStringLiteral("probe"));
    pWidget->setStyleSheet(QStringLiteral("#probe { qproperty-%1: %2; }").arg(_qstrProperty, _qstrWritten));
    pWidget->ensurePolished();
    const QMetaProperty property = pMeta->property(iIndex);
    const QVariant qvarValue = pWidget->property(_qstrProperty.toLatin1().constData());
    const QString qstrActual = property.isEnumType()
                                   ? QString::fromLatin1(property.enumerator().valueToKey(qvarValue.toInt()))
                                   : qvarValue.toString();
    QVERIFY2(qstrActual == qstrValue,
             qPrintable(_qstrType + QLatin1Char('.') + _qstrProperty + QStringLiteral(" is ") + qstrActual));
}

// Every file the Qt forms and sources of the player and the message box
// know by name, to check the names the sheets select on against.
QString SourceText()
{
    QString qstrText;
    QDirIterator it(QStringLiteral(QUILL_SOURCE_DIR) + QStringLiteral("/BusinessLib"),
                    {QStringLiteral("*.ui"), QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        qstrText += ReadText(it.next());
    return qstrText;
}

}  // namespace

class tst_Skins : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void bothSkinsShipTheSameFiles();
    void sheetsLoadWithoutWarnings_data();
    void sheetsLoadWithoutWarnings();
    void imagesExistRenderAndAreUsed_data();
    void imagesExistRenderAndAreUsed();
    void bothSkinsSelectTheSameThings();
    void sheetsUseOnlyKnownPropertiesAndNames();
    void lookFollowsStateAndEnabled_data();
    void lookFollowsStateAndEnabled();

private:
    std::unique_ptr<QuillTest::ScopedWorkDir> m_pWorkDir;
};

void tst_Skins::initTestCase()
{
    for (const QString& qstrSkin : kSkins)
        QVERIFY2(QFileInfo(QuillTest::BinPath(QStringLiteral("resource/skin/") + qstrSkin)).isDir(),
                 qPrintable(qstrSkin));
    // Sheets name their images relative to the working directory, as the
    // player runs: give the test one that holds the installed resource tree.
    m_pWorkDir = std::make_unique<QuillTest::ScopedWorkDir>();
    QVERIFY(m_pWorkDir->LinkFromBin(QStringLiteral("resource")));
    g_pPreviousHandler = qInstallMessageHandler(CollectWarnings);
}

void tst_Skins::cleanupTestCase()
{
    qInstallMessageHandler(g_pPreviousHandler);
    m_pWorkDir.reset();
}

void tst_Skins::init()
{
    g_lstWarnings.clear();
}

void tst_Skins::bothSkinsShipTheSameFiles()
{
    const QStringList lstDark = SkinFiles(kSkins[0], {QStringLiteral("*.qss"), QStringLiteral("*.svg")});
    const QStringList lstLight = SkinFiles(kSkins[1], {QStringLiteral("*.qss"), QStringLiteral("*.svg")});
    QVERIFY(!lstDark.isEmpty());
    QCOMPARE(lstLight, lstDark);

    // The fixed files the player's widgets load, and the views' own sheets.
    for (const QString& qstrSkin : kSkins) {
        const QStringList lstFiles = SkinFiles(qstrSkin, {QStringLiteral("*.qss")});
        for (const char* pszFile :
             {"ModuleKoPlayer/qss/ModuleKoPlayer.qss", "ModuleKoPlayer/qss/TopBar.qss", "ModuleKoPlayer/qss/ToolBar.qss",
              "ModuleKoPlayer/qss/CLS_DlgQuillPlayer.qss", "WgtMsgBox/qss/CLS_WgtMsgBox.qss"})
            QVERIFY2(lstFiles.contains(QLatin1String(pszFile)), pszFile);
        QVERIFY(std::any_of(lstFiles.begin(), lstFiles.end(),
                            [](const QString& f) { return f.startsWith(QLatin1String("Common/")); }));
        // The shared folder is read whole into every view's sheet.
        const QStringList lstCommon =
            QDir(QuillTest::BinPath(QStringLiteral("resource/skin/%1/Common").arg(qstrSkin))).entryList(QDir::Files);
        for (const QString& qstrEntry : lstCommon)
            QVERIFY2(qstrEntry.endsWith(QLatin1String(".qss")), qPrintable(qstrEntry));
    }
}

void tst_Skins::sheetsLoadWithoutWarnings_data()
{
    QTest::addColumn<QString>("text");
    for (const QString& qstrSkin : kSkins) {
        const QString qstrRoot = QStringLiteral("./resource/skin/") + qstrSkin + QLatin1Char('/');
        QString qstrCommon;
        const QStringList lstFiles = SkinFiles(qstrSkin, {QStringLiteral("*.qss")});
        for (const QString& qstrFile : lstFiles) {
            if (qstrFile.startsWith(QLatin1String("Common/")))
                qstrCommon += ReadText(qstrRoot + qstrFile);
        }
        for (const QString& qstrFile : lstFiles) {
            const QString qstrText = ReadText(qstrRoot + qstrFile);
            QTest::newRow(qPrintable(qstrSkin + QLatin1Char('/') + qstrFile)) << qstrText;
            // A view's sheet as the view base installs it: shared part first.
            if (qstrFile.contains(QLatin1String("/qss/CLS_")))
                QTest::newRow(qPrintable(qstrSkin + QStringLiteral("/Common+") + qstrFile)) << qstrCommon + qstrText;
        }
    }
}

void tst_Skins::sheetsLoadWithoutWarnings()
{
    QFETCH(QString, text);
    const QList<Rule> lstRules = ParseSheet(text);
    QVERIFY(!lstRules.isEmpty());

    SelectorTree tree = BuildTree(lstRules);
    tree.pRoot->setStyleSheet(text);
    tree.pRoot->show();
    QVERIFY(QTest::qWaitForWindowExposed(tree.pRoot.get()));
    tree.pRoot->grab();

    // Every look: each attribute value selected on, then disabled.
    for (auto it = tree.hashAttributes.constBegin(); it != tree.hashAttributes.constEnd(); ++it) {
        for (const auto& attr : it.value()) {
            it.key()->setProperty(attr.first.constData(), attr.second);
            Repolish(it.key());
            tree.pRoot->grab();
        }
    }
    const QList<QWidget*> lstWidgets = tree.pRoot->findChildren<QWidget*>();
    for (QWidget* pWidget : lstWidgets)
        pWidget->setEnabled(false);
    tree.pRoot->grab();
    QVERIFY2(g_lstWarnings.isEmpty(), qPrintable(g_lstWarnings.join(QLatin1Char('\n'))));
}

void tst_Skins::imagesExistRenderAndAreUsed_data()
{
    QTest::addColumn<QString>("skin");
    for (const QString& qstrSkin : kSkins)
        QTest::newRow(qPrintable(qstrSkin)) << qstrSkin;
}

void tst_Skins::imagesExistRenderAndAreUsed()
{
    QFETCH(QString, skin);
    const QString qstrRoot = QStringLiteral("./resource/skin/") + skin + QLatin1Char('/');
    QSet<QString> setUsed;
    for (const QString& qstrFile : SkinFiles(skin, {QStringLiteral("*.qss")})) {
        for (const Rule& rule : ParseSheet(ReadText(qstrRoot + qstrFile))) {
            for (const QString& qstrUrl : rule.lstUrls) {
                const QString qstrWhere = qstrFile + QStringLiteral(": ") + qstrUrl;
                // A skin names only its own images, relative to the working
                // directory as the player's are.
                QVERIFY2(qstrUrl.startsWith(qstrRoot), qPrintable(qstrWhere));
                QVERIFY2(QFileInfo(qstrUrl).isFile(), qPrintable(qstrWhere));
                setUsed << QDir::cleanPath(qstrUrl);
            }
        }
    }
    QVERIFY(!setUsed.isEmpty());

    for (const QString& qstrImage : SkinFiles(skin, {QStringLiteral("*.svg")})) {
        const QString qstrPath = qstrRoot + qstrImage;
        QSvgRenderer renderer(qstrPath);
        QVERIFY2(renderer.isValid(), qPrintable(qstrPath));
        // Drawn where it will be seen: a 20 px icon, not left blank.
        QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        int iInked = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                iInked += qAlpha(image.pixel(x, y)) > 128 ? 1 : 0;
        QVERIFY2(iInked >= 10, qPrintable(qstrPath));
        QVERIFY2(!QIcon(qstrPath).pixmap(20, 20).isNull(), qPrintable(qstrPath));
        QVERIFY2(setUsed.contains(QDir::cleanPath(qstrPath)), qPrintable(qstrPath + QStringLiteral(" is used by no sheet")));
    }
    QVERIFY2(g_lstWarnings.isEmpty(), qPrintable(g_lstWarnings.join(QLatin1Char('\n'))));
}

void tst_Skins::bothSkinsSelectTheSameThings()
{
    const QString qstrDark = QStringLiteral("./resource/skin/dark/");
    const QString qstrLight = QStringLiteral("./resource/skin/light/");
    for (const QString& qstrFile : SkinFiles(kSkins[0], {QStringLiteral("*.qss")})) {
        QStringList lstDark;
        QStringList lstLight;
        for (const Rule& rule : ParseSheet(ReadText(qstrDark + qstrFile)))
            for (const QString& qstrSelector : rule.lstSelectors)
                lstDark << qstrSelector + QStringLiteral(" { ") + rule.lstProperties.join(QLatin1Char(';'));
        for (const Rule& rule : ParseSheet(ReadText(qstrLight + qstrFile)))
            for (const QString& qstrSelector : rule.lstSelectors)
                lstLight << qstrSelector + QStringLiteral(" { ") + rule.lstProperties.join(QLatin1Char(';'));
        QVERIFY2(!lstDark.isEmpty(), qPrintable(qstrFile));
        for (const QString& qstrRule : lstDark)
            QVERIFY2(lstLight.contains(qstrRule), qPrintable(QStringLiteral("light ") + qstrFile + QStringLiteral(" lacks ") + qstrRule));
        for (const QString& qstrRule : lstLight)
            QVERIFY2(lstDark.contains(qstrRule), qPrintable(QStringLiteral("dark ") + qstrFile + QStringLiteral(" lacks ") + qstrRule));

        // A scaled variant styles exactly what its plain sheet styles.
        static const QRegularExpression reVariant(QStringLiteral("_\\d+(\\.\\d+)?K\\.qss$"));
        if (qstrFile.contains(reVariant)) {
            QString qstrPlain = qstrFile;
            qstrPlain.replace(reVariant, QStringLiteral(".qss"));
            QStringList lstPlain;
            for (const Rule& rule : ParseSheet(ReadText(qstrDark + qstrPlain)))
                for (const QString& qstrSelector : rule.lstSelectors)
                    lstPlain << qstrSelector + QStringLiteral(" { ") + rule.lstProperties.join(QLatin1Char(';'));
            QCOMPARE(lstDark, lstPlain);
        }
    }
}

void tst_Skins::sheetsUseOnlyKnownPropertiesAndNames()
{
    const QString qstrSources = SourceText();
    static const QRegularExpression reName(QStringLiteral("#([A-Za-z_][A-Za-z0-9_]*)"));
    static const QRegularExpression reAttribute(QStringLiteral("\\[(\\w+)="));
    QSet<QString> setNames;
    for (const QString& qstrSkin : kSkins) {
        const QString qstrRoot = QStringLiteral("./resource/skin/") + qstrSkin + QLatin1Char('/');
        for (const QString& qstrFile : SkinFiles(qstrSkin, {QStringLiteral("*.qss")})) {
            for (const Rule& rule : ParseSheet(ReadText(qstrRoot + qstrFile))) {
                for (int i = 0; i < rule.lstProperties.size(); ++i) {
                    const QString& qstrProperty = rule.lstProperties.at(i);
                    if (qstrProperty.startsWith(QLatin1String("qproperty-"))) {
                        for (const QString& qstrSelector : rule.lstSelectors)
                            CheckWidgetProperty(ParseSelector(qstrSelector).last().qstrType,
                                                qstrProperty.mid(10), rule.lstValues.at(i));
                        if (QTest::currentTestFailed())
                            return;
                        continue;
                    }
                    QVERIFY2(KnownProperties().contains(qstrProperty),
                             qPrintable(qstrFile + QStringLiteral(": ") + qstrProperty));
                }
                for (const QString& qstrSelector : rule.lstSelectors) {
                    auto it = reName.globalMatch(qstrSelector);
                    while (it.hasNext())
                        setNames << it.next().captured(1);
                    auto itAttr = reAttribute.globalMatch(qstrSelector);
                    while (itAttr.hasNext()) {
                        const QString qstrProperty = itAttr.next().captured(1);
                        QVERIFY2(qstrSources.contains(QStringLiteral("setProperty(\"%1\"").arg(qstrProperty)),
                                 qPrintable(qstrFile + QStringLiteral(": no widget sets ") + qstrProperty));
                    }
                }
            }
        }
    }
    // A selector on a name no form or widget uses styles nothing.
    QStringList lstMissing;
    for (const QString& qstrName : setNames) {
        if (!qstrSources.contains(QStringLiteral("name=\"%1\"").arg(qstrName)) &&
            !qstrSources.contains(QStringLiteral("\"%1\"").arg(qstrName)))
            lstMissing << qstrName;
    }
    lstMissing.sort();
    // The player window and dialog own the names of the video area; until
    // their forms are in the tree those names cannot be checked.
    const QString qstrModule = QStringLiteral(QUILL_SOURCE_DIR) + QStringLiteral("/BusinessLib/ModuleKoPlayer/");
    if (!lstMissing.isEmpty() && (!QFileInfo::exists(qstrModule + QStringLiteral("MainWindow.ui")) ||
                                  !QFileInfo::exists(qstrModule + QStringLiteral("CLS_DlgQuillPlayer.cpp"))))
        QSKIP(qPrintable(QStringLiteral("player window not built yet; unchecked: ") + lstMissing.join(QStringLiteral(", "))));
    QVERIFY2(lstMissing.isEmpty(), qPrintable(QStringLiteral("no widget named ") + lstMissing.join(QStringLiteral(", "))));
}

void tst_Skins::lookFollowsStateAndEnabled_data()
{
    QTest::addColumn<QString>("skin");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("container");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("canDisable");
    for (const QString& qstrSkin : kSkins) {
        const QString qstrPlayer = QStringLiteral("ModuleKoPlayer/qss/ModuleKoPlayer.qss");
        QTest::newRow(qPrintable(qstrSkin + QStringLiteral(" play")))
            << qstrSkin << qstrPlayer << "bottomBar" << "toolButton_play" << "state" << QVariant(1) << true;
        QTest::newRow(qPrintable(qstrSkin + QStringLiteral(" sound")))
            << qstrSkin << qstrPlayer << "bottomBar" << "toolButton_sound" << "state" << QVariant(1) << true;
        QTest::newRow(qPrintable(qstrSkin + QStringLiteral(" maximise")))
            << qstrSkin << QStringLiteral("ModuleKoPlayer/qss/TopBar.qss") << "groupBox" << "pushButton_big" << "blMax"
            << QVariant(true) << false;
        QTest::newRow(qPrintable(qstrSkin + QStringLiteral(" step")))
            << qstrSkin << qstrPlayer << "bottomBar" << "toolButton_stepup" << QString() << QVariant() << true;
    }
}

// The buttons as the control bar and top bar hold them: the icon changes
// when the property changes and the widget is re-polished, goes back when
// it is reset, and the disabled look of the player's controls differs from
// the enabled one (the window buttons are never disabled).
void tst_Skins::lookFollowsStateAndEnabled()
{
    QFETCH(QString, skin);
    QFETCH(QString, file);
    QFETCH(QString, container);
    QFETCH(QString, button);
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(bool, canDisable);

    QWidget root;
    auto* pContainer = new QWidget(&root);
    pContainer->setObjectName(container);
    auto* pLayout = new QHBoxLayout(pContainer);
    QAbstractButton* pButton = button.startsWith(QLatin1String("toolButton"))
                                   ? static_cast<QAbstractButton*>(new QToolButton(pContainer))
                                   : new QPushButton(pContainer);
    pButton->setObjectName(button);
    // The value the widgets start with: "state" 0, "blMax" false.
    if (!property.isEmpty())
        pButton->setProperty(property.toLatin1().constData(),
                             value.userType() == QMetaType::Bool ? QVariant(false) : QVariant(0));
    pLayout->addWidget(pButton);
    root.setStyleSheet(ReadText(QStringLiteral("./resource/skin/%1/%2").arg(skin, file)));
    root.show();
    QVERIFY(QTest::qWaitForWindowExposed(&root));

    // 20 px icons in 30 px buttons, the play button a little larger.
    QVERIFY2(pButton->width() >= 30 && pButton->height() >= 28, qPrintable(QStringLiteral("%1x%2").arg(pButton->width()).arg(pButton->height())));
    const QImage imgRest = pButton->grab().toImage();

    if (!property.isEmpty()) {
        const QVariant qvarRest = pButton->property(property.toLatin1().constData());
        pButton->setProperty(property.toLatin1().constData(), value);
        Repolish(pButton);
        const QImage imgSet = pButton->grab().toImage();
        QVERIFY2(imgSet != imgRest, "the property changes nothing");
        // The same value again leaves the look as it is.
        pButton->setProperty(property.toLatin1().constData(), value);
        Repolish(pButton);
        QCOMPARE(pButton->grab().toImage(), imgSet);
        pButton->setProperty(property.toLatin1().constData(), qvarRest);
        Repolish(pButton);
        QCOMPARE(pButton->grab().toImage(), imgRest);
    }

    if (canDisable) {
        pButton->setEnabled(false);
        QVERIFY2(pButton->grab().toImage() != imgRest, "disabled looks like enabled");
    }
    QVERIFY2(g_lstWarnings.isEmpty(), qPrintable(g_lstWarnings.join(QLatin1Char('\n'))));
}

QTEST_MAIN(tst_Skins)
#include "tst_Skins.moc"
