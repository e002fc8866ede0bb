#include "CLS_Player7ComboBox.h"
#include "CLS_Player7ListItemDelegate.h"
#include "CLS_PlayerToolButton.h"
#include "CLS_WgtPlayerSlider.h"
#include "ServiceFixture.h"

#include <QApplication>
#include <QListView>
#include <QPainter>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QVBoxLayout>

#include <functional>

namespace {

// The fill colour of the test palette; the highlight is red.
constexpr QRgb kFill = 0x202020;

// Pixels of _img that pass _fnTest.
int Count(const QImage& _img, const std::function<bool(QRgb)>& _fnTest)
{
    int iCount = 0;
    for (int y = 0; y < _img.height(); ++y)
        for (int x = 0; x < _img.width(); ++x)
            iCount += _fnTest(_img.pixel(x, y)) ? 1 : 0;
    return iCount;
}

bool IsReddish(QRgb _rgb)
{
    return qRed(_rgb) > qGreen(_rgb) + 60 && qRed(_rgb) > qBlue(_rgb) + 60;
}

QRgb Rgb(const QImage& _img, int _iX, int _iY)
{
    return _img.pixel(_iX, _iY) & 0xffffff;
}

// One speed entry, its delegate text (role 257) and displayed text apart.
struct OneEntry
{
    QStandardItemModel model;
    OneEntry(const QString& _qstrText, const QString& _qstrDisplay = QString())
    {
        auto* pItem = new QStandardItem(_qstrDisplay);
        pItem->setData(_qstrText, CLS_Player7ListItemDelegate::kTextRole);
        model.appendRow(pItem);
    }
    QModelIndex Index() const { return model.index(0, 0); }
};

QImage Render(const QModelIndex& _index, const QSize& _size, QStyle::State _state)
{
    CLS_Player7ListItemDelegate delegate;
    QImage img(_size, QImage::Format_ARGB32);
    img.fill(Qt::transparent);
    QStyleOptionViewItem option;
    option.rect = QRect(QPoint(0, 0), _size);
    option.state = QStyle::State_Enabled | _state;
    QPainter painter(&img);
    delegate.paint(&painter, option, _index);
    return img;
}

}  // namespace

class TestChromeControls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The colour service reads the active skin's palette below the current
        // directory; this one gives colours a pixel test can tell apart.
        QVERIFY(m_services.IsReady());
        QVERIFY(m_services.WorkDir().WriteFile(
            QStringLiteral("resource/skin/dark/palette.json"),
            R"({"Common": {"<BgColor_Common>": "#202020", "<FontColor_Common>": "#d0d0d0"},
                "ModulePassengerFlowStatistic": {"<FontColor_Pass>": "#ff2020"}})"));
    }

    void sliderPressJumpsAndReleaseReports()
    {
        CLS_WgtPlayerSlider slider;
        slider.setOrientation(Qt::Horizontal);
        slider.setFixedSize(200, 20);
        slider.show();
        QVERIFY(QTest::qWaitForWindowExposed(&slider));
        QSignalSpy clicks(&slider, &CLS_WgtPlayerSlider::SliderClick);
        // minimum, maximum, press x, value after the press, release x, value reported
        const int cases[][6] = {{0, 100, 150, 75, 199, 99},   // release at the last pixel
                                {0, 100, 10, 5, 250, 125},    // released beyond the right end
                                {0, 100, 10, 5, -40, -20},    // released left of the widget
                                {10, 30, 100, 20, 150, 25}};  // range not starting at zero
        for (const auto& c : cases) {
            slider.setRange(c[0], c[1]);
            clicks.clear();
            QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(c[2], 10));
            QCOMPARE(slider.value(), c[3]);
            QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(c[4], 10));
            QCOMPARE(clicks, QList<QVariantList>{{c[5]}});
            // Reporting is all a release does; moving the slider is the receiver's call.
            QCOMPARE(slider.value(), c[3]);
        }
    }

    void toolButtonStateRestylesAtOnce()
    {
        CLS_PlayerToolButton button;
        button.setStyleSheet(
            QStringLiteral("CLS_PlayerToolButton { border: none; background: #0000ff; }"
                           "CLS_PlayerToolButton[state=\"1\"] { background: #00ff00; }"));
        button.setFixedSize(24, 24);
        button.SetState(1);
        QCOMPARE(Rgb(button.grab().toImage(), 12, 12), QRgb(0x00ff00));
        button.SetState(0);
        QCOMPARE(Rgb(button.grab().toImage(), 12, 12), QRgb(0x0000ff));
    }

    void comboListOpensAbove()
    {
        QWidget window;
        auto* pCombo = new CLS_Player7ComboBox(&window);
        (new QVBoxLayout(&window))->addWidget(pCombo);
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
        pCombo->hidePopup();
    }

    void delegateSizesAndPaints()
    {
        const CLS_Player7ListItemDelegate delegate;
        QStyleOptionViewItem option;
        option.rect = QRect(0, 0, 77, 50);
        QCOMPARE(delegate.sizeHint(option, OneEntry("2X", "2X").Index()), QSize(77, 30));
        // Only role 257 counts, whatever the list shows.
        QCOMPARE(delegate.sizeHint(option, OneEntry("", "4X").Index()), QSize(77, 10));

        OneEntry entry(QStringLiteral("16X"));
        const QImage imgPlain = Render(entry.Index(), QSize(80, 30), {});
        QCOMPARE(Rgb(imgPlain, 5, 15), kFill);
        QCOMPARE(Count(imgPlain, IsReddish), 0);
        QVERIFY(Count(imgPlain, [](QRgb _rgb) { return (_rgb & 0xffffff) == kFill; }) < 80 * 30);
        const QImage imgHover = Render(entry.Index(), QSize(80, 30), QStyle::State_MouseOver);
        QVERIFY2(Count(imgHover, IsReddish) > 10, "hovered text not drawn in the highlight colour");
        QCOMPARE(Render(entry.Index(), QSize(80, 30), QStyle::State_Selected), imgHover);

        // The empty entry: a triangle pointing down, from the top of the
        // middle half to a point at the bottom centre, the corners untouched.
        const QImage img =
            Render(OneEntry(QString{}).Index(), QSize(40, 10), QStyle::State_MouseOver);
        QCOMPARE(QList<QRgb>({Rgb(img, 12, 1), Rgb(img, 20, 8)}), QList<QRgb>({kFill, kFill}));
        QCOMPARE(qAlpha(img.pixel(2, 1)) + qAlpha(img.pixel(12, 8)), 0);
    }

private:
    QuillTest::ServiceFixture m_services{QuillTest::Service::Param,
                                         QuillTest::Service::ColorManage};
};

QTEST_MAIN(TestChromeControls)
#include "tst_chromecontrols.moc"
