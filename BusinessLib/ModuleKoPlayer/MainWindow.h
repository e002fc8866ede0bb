#pragma once

#include <QMainWindow>
#include <QString>
#include <QTimer>
#include <QTranslator>
#include <QVariantMap>

class CLS_ClipCutController;
class CLS_VideoAreaTools;
class CLS_VideoContextMenu;
class CLS_VideoPlayControl;
class CLS_WgtHistroyList;
class CLS_WgtPlayerControlBar;

namespace Ui {
class MainWindow;
}

// The playback controller: owns the video area, the control bar and the
// history list, creates one CLS_VideoPlayControl per opened file and turns
// every user action into player calls, keeping the chrome, the history and
// the sound parameters in step with the player.
//
// States: no file (at start and after any stop), playing, paused. Opening a
// file from any state first stops the current one.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* _pParent = nullptr);
    ~MainWindow() override;

    // Set by the dialog while the video area is a full-screen window.
    void SetFullScreen(bool _blFullScreen) { m_blFullScreen = _blFullScreen; }
    // The video area's right-click menu, for features to add their entries.
    CLS_VideoContextMenu* ContextMenu() const { return m_pContextMenu; }
    CLS_VideoAreaTools* AreaTools() const { return m_pAreaTools; }

signals:
    void SignDealCloseApp();
    // For the hosting dialog; the window itself never emits it.
    void SignUpdateSpeedAndIconInfo(int _iSpeed);
    void SignFullScreen();
    void SignSetVideoDecryptKey(QString _qstrPassword);
    void SignNormalSpeed();

public slots:
    void SlotCloseApp();
    void SlotPlayBackDecryptCallBack(int _iDecrytStatusType, qlonglong _qi64PlayHandle);
    void SlotDealVideoHostPlayOver(int _iPlayStype, qlonglong _qi64PlayHandle);

private slots:
    // The one way a file is opened; _lStartTime in seconds.
    void SlotContinuePlay(QString _qstrFilePath, long _lStartTime);
    void SlotSpeedChange(int _iIndex);
    void SlotShowHistroyLog();
    void SlotFullScreen();
    void SlotSliderClicked(int value);
    void SlotSliderValueChanged(int value);
    void SlotVideoPlayOrPause();
    void SlotPlayProgresChanged(int value);
    void SlotOpenFile();
    void SlotOpenOrCloseSound();
    void SlotSoundValueChange(int value);
    void SlotSoundSliderPressed(int _iValue);
    void SlotSoundSliderMoved(int _iValue);
    void SlotGetPlayProgress();
    void SlotStopVideo(bool _blIsVideoEnd);
    void SlotStopVideo();
    void SlotStopVideoEx();
    void SlotStepUp();
    void SlotStepBack();
    void SlotFastPlay();
    void SlotSlowPlay();
    void SlotSetNormalSpeed();
    void SlotAppSoundStateChanged(QVariantMap _qmapParam);

protected:
    bool eventFilter(QObject* _pWatched, QEvent* _pEvent) override;
    void dragEnterEvent(QDragEnterEvent* _pEvent) override;
    void dropEvent(QDropEvent* _pEvent) override;

private:
    void LoadStyleSheet();
    void CreateRenderSurface();
    void MakeConnections();
    void DisconnectControl();
    // The play handle the player draws into: the render widget itself, or the
    // native window of the plain widget.
    qlonglong RenderHandle();
    void RefreshDisplay();
    void ApplySoundSettings();
    void PublishSoundState(bool _blSoundOpen);
    void PlaceHistroyList();
    void ResumeIfPaused();
    void ShowNotice(const QString& _qstrContent);
    void AskPassword(qlonglong _qi64PlayHandle);
    void ReportWrongPassword(qlonglong _qi64PlayHandle);

    Ui::MainWindow* ui;
    QString m_qstrLastDir;
    bool m_blFullScreen = false;
    CLS_WgtHistroyList* m_pHistroyList = nullptr;
    bool m_blHistroyListVisible = false;
    int m_iSliderMin = 0;
    int m_iSliderMax = 100;
    CLS_WgtPlayerControlBar* m_pControlBar = nullptr;
    bool m_blNoFile = true;
    int m_iSpeedIndex = 0;
    QWidget* m_pRenderWgt = nullptr;
    bool m_blGLRendering = false;
    CLS_VideoPlayControl* m_pVideoPlayControl = nullptr;
    QTimer* m_pProgressTimer = nullptr;
    int m_iTotalTime = 0;
    int m_iPlayedTime = 0;
    QString m_qstrFilePath;
    int m_iFileType = 4;
    QTranslator m_translator;
    bool m_blPlaying = false;
    bool m_blSoundOpen = false;
    bool m_blResume = false;
    int m_iPendingSeek = 0;
    bool m_blStepMode = false;
    CLS_ClipCutController* m_pClipCut = nullptr;
    CLS_VideoContextMenu* m_pContextMenu = nullptr;
    CLS_VideoAreaTools* m_pAreaTools = nullptr;
};
