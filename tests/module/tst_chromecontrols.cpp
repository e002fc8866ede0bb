#include "CLS_Player7ComboBox.h"
#include "CLS_Player7ListItemDelegate.h"
#include "CLS_PlayerToolButton.h"
#include "CLS_WgtPlayerSlider.h"
#include "ChromeTestSupport.h"

#include <QApplication>
#include <QListView>
#include <QPainter>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QVBoxLayout>

class TestChromeControls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void sliderPressJumpsAndReleaseReports_data();
    void sliderPressJumpsAndReleaseReports();
    void sliderCutMarksPaintAndClear();

    void toolButtonStateRestylesAtOnce();

    void comboListOpensAbove();

    void delegateSizeByText_data();
    void delegateSizeByText();
    void delegatePaintsHighlightOnHoverAndSelection();
    void delegateDrawsMarkerForEmptyEntry();

private:
    static QImage Render(const CLS_Player7ListItemDelegate& _delegate, const QModelIndex& _index,
                         const QSize& _size, QStyle::State _state);

    QuillTest::ScopedWorkDir m_workDir;
};

namespace {

// Colours of the test palette; the delegate reads them at construction.
constexpr QRgb kFill = 0x202020;
constexpr QRgb kHighlight = 0xff2020;

bool IsReddish(QRgb _rgb)
{
    return qRed(_rgb) > qGreen(_rgb) + 60 && qRed(_rgb) > qBlue(_rgb) + 60;
}

int CountReddish(const QImage& _img)
{
    int iCount = 0;
    for (int y = 0; y < _img.height(); ++y)
        for (int x = 0; x < _img.width(); ++x)
            if (IsReddish(_img.pixel(x, y))) ++iCount;
    return iCount;
}

}  // namespace

void TestChromeControls::initTestCase()
{
    // The colour service reads the active skin's palette below the current
    // directory; this one gives the delegate colours a pixel test can tell apart.
    QVERIFY(m_workDir.WriteFile(QStringLiteral("resource/skin/dark/palette.json"),
                                R"({"Common": {"<BgColor_Common>": "#202020",
                                               "<FontColor_Common>": "#d0d0d0"},
                                    "ModulePassengerFlowStatistic": {"<FontColor_Pass>": "#ff2020"}})"));
    QVERIFY(ChromeTest::InitParamService(m_workDir.FilePath(QStringLiteral("params.json"))));
}

void TestChromeControls::sliderPressJumpsAndReleaseReports_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("pressX");
    QTest::addColumn<int>("pressedValue");
    QTest::addColumn<int>("releaseX");
    QTest::addColumn<int>("reported");

    QTest::newRow("200 px, release at the last pixel") << 200 << 0 << 100 << 150 << 75 << 199 << 99;
    QTest::newRow("100 px, never the maximum inside") << 100 << 0 << 100 << 49 << 49 << 99 << 99;
    QTest::newRow("drag ends where the button came up") << 200 << 0 << 100 << 20 << 10 << 120 << 60;
    QTest::newRow("released beyond the right end") << 200 << 0 << 100 << 10 << 5 << 250 << 125;
    QTest::newRow("released left of the widget") << 200 << 0 << 100 << 10 << 5 << -40 << -20;
    QTest::newRow("range not starting at zero") << 200 << 10 << 30 << 100 << 20 << 150 << 25;
}

void TestChromeControls::sliderPressJumpsAndReleaseReports()
{
    QFETCH(int, width);
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, pressX);
    QFETCH(int, pressedValue);
    QFETCH(int, releaseX);
    QFETCH(int, reported);

    CLS_WgtPlayerSlider slider;
    slider.setOrientation(Qt::Horizontal);
    slider.setRange(minimum, maximum);
    slider.setFixedSize(width, 20);
    slider.show();
    QVERIFY(QTest::qWaitForWindowExposed(&slider));
    QSignalSpy clicks(&slider, &CLS_WgtPlayerSlider::SliderClick);

    QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(pressX, 10));
    QCOMPARE(slider.value(), pressedValue);
    QCOMPARE(clicks.count(), 0);

    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(releaseX, 10));
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(clicks.at(0).at(0).toInt(), reported);
    // Reporting is all a release does; moving the slider is the receiver's call.
    QCOMPARE(slider.value(), pressedValue);
}

void TestChromeControls::sliderCutMarksPaintAndClear()
{
    CLS_WgtPlayerSlider slider;
    slider.setOrientation(Qt::Horizontal);
    slider.setRange(0, 100);
    slider.setFixedSize(200, 30);
    const QRgb yellow = QColor(Qt::yellow).rgb();
    const QRgb red = QColor(Qt::red).rgb();

    slider.SetCutPos(0.25, 25, 0.75, 75);
    QVERIFY(slider.IsFirstCutSet() && slider.IsSecondCutSet());
    QCOMPARE(slider.GetSecondCutValue(), 75);
    QImage img = slider.grab().toImage();
    // Two-pixel yellow bars at 50 and 150, visible above the red stretch...
    QCOMPARE(ChromeTest::CountPixels(img, QRect(50, 0, 2, 7), yellow), 14);
    QCOMPARE(ChromeTest::CountPixels(img, QRect(150, 0, 2, 7), yellow), 14);
    QCOMPARE(ChromeTest::CountPixels(img, QRect(50, 23, 2, 7), yellow), 14);
    // ...and the stretch between them, inset seven pixels top and bottom.
    QCOMPARE(ChromeTest::CountPixels(img, QRect(50, 7, 102, 16), red), 102 * 16);
    QCOMPARE(ChromeTest::CountPixels(img, QRect(0, 0, 200, 7), red), 0);
    QCOMPARE(ChromeTest::CountPixels(img, QRect(0, 23, 200, 7), red), 0);
    QCOMPARE(ChromeTest::CountPixels(img, QRect(152, 7, 48, 16), red), 0);

    slider.ClearCutPos();
    QVERIFY(!slider.IsFirstCutSet() && !slider.IsSecondCutSet());
    QCOMPARE(slider.GetFirstCutValue(), 0);
    img = slider.grab().toImage();
    QCOMPARE(ChromeTest::CountPixels(img, img.rect(), yellow), 0);
    QCOMPARE(ChromeTest::CountPixels(img, img.rect(), red), 0);

    // Cuts on the same pixel mark it but select nothing.
    slider.SetCutPos(0.5, 50, 0.5, 50);
    img = slider.grab().toImage();
    QCOMPARE(ChromeTest::CountPixels(img, QRect(100, 0, 2, 30), yellow), 60);
    QCOMPARE(ChromeTest::CountPixels(img, img.rect(), red), 0);
}

void TestChromeControls::toolButtonStateRestylesAtOnce()
{
    CLS_PlayerToolButton button;
    QCOMPARE(button.property("state").toInt(), 0);
    button.setStyleSheet(
        QStringLiteral("CLS_PlayerToolButton { border: none; background: #0000ff; }"
                       "CLS_PlayerToolButton[state=\"1\"] { background: #00ff00; }"));
    button.setFixedSize(24, 24);
    const QPoint center(12, 12);
    QCOMPARE(button.grab().toImage().pixel(center) & 0xffffff, QRgb(0x0000ff));

    for (int iRound = 0; iRound < 2; ++iRound) {
        button.SetState(1);
        QCOMPARE(button.GetState(), 1);
        QCOMPARE(button.property("state").toInt(), 1);
        QCOMPARE(button.grab().toImage().pixel(center) & 0xffffff, QRgb(0x00ff00));
    }
    button.SetState(0);
    QCOMPARE(button.grab().toImage().pixel(center) & 0xffffff, QRgb(0x0000ff));
}

void TestChromeControls::comboListOpensAbove()
{
    QWidget window;
    auto* pLayout = new QVBoxLayout(&window);
    auto* pCombo = new CLS_Player7ComboBox(&window);
    pLayout->addWidget(pCombo);
    for (int i = 0; i < 6; ++i)
        pCombo->addItem(QString::number(i));
    pCombo->setCurrentIndex(5);
    window.setGeometry(200, 420, 200, 40);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    // Animated combo boxes need the general effects switch on too.
    QApplication::setEffectEnabled(Qt::UI_General, true);
    QApplication::setEffectEnabled(Qt::UI_AnimateCombo, true);

    pCombo->showPopup();
    QWidget* pContainer = pCombo->view()->window();
    QTRY_VERIFY(pContainer->isVisible());
    const QPoint qptCombo = pCombo->mapToGlobal(QPoint(0, 0));
    QCOMPARE(pContainer->geometry().left(), qptCombo.x());
    QCOMPARE(pContainer->geometry().bottom() + 1, qptCombo.y());
    QVERIFY(QApplication::isEffectEnabled(Qt::UI_AnimateCombo));
    pCombo->hidePopup();
}

QImage TestChromeControls::Render(const CLS_Player7ListItemDelegate& _delegate,
                                  const QModelIndex& _index, const QSize& _size,
                                  QStyle::State _state)
{
    QImage img(_size, QImage::Format_ARGB32);
    img.fill(Qt::transparent);
    QStyleOptionViewItem option;
    option.rect = QRect(QPoint(0, 0), _size);
    option.state = QStyle::State_Enabled | _state;
    QPainter painter(&img);
    _delegate.paint(&painter, option, _index);
    return img;
}

void TestChromeControls::delegateSizeByText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("display");
    QTest::addColumn<int>("height");

    QTest::newRow("entry with text") << "2X"
                                     << "2X" << 30;
    QTest::newRow("empty entry") << ""
                                 << "" << 10;
    // Only role 257 counts, whatever the list shows.
    QTest::newRow("display text alone") << ""
                                        << "4X" << 10;
}

void TestChromeControls::delegateSizeByText()
{
    QFETCH(QString, text);
    QFETCH(QString, display);
    QFETCH(int, height);

    QStandardItemModel model;
    auto* pItem = new QStandardItem(display);
    pItem->setData(text, CLS_Player7ListItemDelegate::kTextRole);
    model.appendRow(pItem);

    CLS_Player7ListItemDelegate delegate;
    QStyleOptionViewItem option;
    option.rect = QRect(0, 0, 77, 50);
    QCOMPARE(delegate.sizeHint(option, model.index(0, 0)), QSize(77, height));
}

void TestChromeControls::delegatePaintsHighlightOnHoverAndSelection()
{
    QStandardItemModel model;
    auto* pItem = new QStandardItem();
    pItem->setData(QStringLiteral("16X"), CLS_Player7ListItemDelegate::kTextRole);
    model.appendRow(pItem);
    const QModelIndex index = model.index(0, 0);
    CLS_Player7ListItemDelegate delegate;
    const QSize size(80, 30);

    const QImage imgPlain = Render(delegate, index, size, {});
    QCOMPARE(imgPlain.pixel(5, 15) & 0xffffff, kFill);
    QVERIFY(CountReddish(imgPlain) == 0);
    QVERIFY(ChromeTest::CountPixels(imgPlain, imgPlain.rect(), kFill) <
            size.width() * size.height());

    const QImage imgHover = Render(delegate, index, size, QStyle::State_MouseOver);
    QVERIFY2(CountReddish(imgHover) > 10, "hovered text not drawn in the highlight colour");
    QCOMPARE(imgHover.pixel(5, 15) & 0xffffff, kFill);

    const QImage imgSelected = Render(delegate, index, size, QStyle::State_Selected);
    QCOMPARE(imgSelected, imgHover);

    // Nothing at all for an index that names no entry.
    const QImage imgInvalid = Render(delegate, QModelIndex(), size, QStyle::State_MouseOver);
    QCOMPARE(ChromeTest::CountPixels(imgInvalid, imgInvalid.rect(), 0),
             size.width() * size.height());
    QCOMPARE(qAlpha(imgInvalid.pixel(5, 15)), 0);
    Q_UNUSED(kHighlight);
}

void TestChromeControls::delegateDrawsMarkerForEmptyEntry()
{
    QStandardItemModel model;
    auto* pItem = new QStandardItem();
    pItem->setData(QString(), CLS_Player7ListItemDelegate::kTextRole);
    model.appendRow(pItem);
    CLS_Player7ListItemDelegate delegate;

    const QImage img = Render(delegate, model.index(0, 0), QSize(40, 10), QStyle::State_MouseOver);
    // A triangle pointing down: full across the middle half at the top, a point
    // at the bottom centre, the cell's corners untouched.
    QCOMPARE(img.pixel(20, 1), QColor(QRgb(kFill)).rgb());
    QCOMPARE(img.pixel(12, 1), QColor(QRgb(kFill)).rgb());
    QCOMPARE(qAlpha(img.pixel(2, 1)), 0);
    QCOMPARE(qAlpha(img.pixel(37, 1)), 0);
    QCOMPARE(qAlpha(img.pixel(12, 8)), 0);
    QCOMPARE(img.pixel(20, 8), QColor(QRgb(kFill)).rgb());
}

QTEST_MAIN(TestChromeControls)
#include "tst_chromecontrols.moc"
