#pragma once

#include <QObject>
#include <QString>

#include <functional>

class CLS_VideoContextMenu;
class CLS_VideoPlayControl;
class CLS_VideoZoom;
class CLS_WgtPlayerControlBar;
class QAction;
class QTimer;
class QWidget;

// What the video area offers besides playing: stills of the picture on
// screen, digital zoom and the recording's own clock in the time label. It
// puts its entries into the area's menu and reaches the playback only
// through the current control, which the window hands it on demand.
class CLS_VideoAreaTools : public QObject
{
    Q_OBJECT
public:
    using ControlFn = std::function<CLS_VideoPlayControl*()>;
    using PathFn = std::function<QString()>;

    CLS_VideoAreaTools(QWidget* _pArea, CLS_VideoContextMenu* _pMenu,
                       CLS_WgtPlayerControlBar* _pControlBar, ControlFn _fnControl,
                       PathFn _fnPath);

    // A playback started or stopped: back to the whole picture and the
    // played time.
    void PlaybackChanged();
    // The time label follows the recording's clock, when that is asked for
    // and the file has one, a few times a second: seeks and steps show at once.
    void RefreshClock();
    CLS_VideoZoom* Zoom() const { return m_pZoom; }

public slots:
    // Saves the picture on screen into the snapshot folder (asked for the
    // first time); the written path, empty when nothing was written.
    QString SlotSnapshot();
    void SlotChooseSnapshotFolder();
    void SlotResetZoom();
    void SlotShowRecordedTime(bool _blShow);

private:
    void UpdateEntries();
    QSize PictureSize() const;

    QWidget* m_pArea = nullptr;
    CLS_WgtPlayerControlBar* m_pControlBar = nullptr;
    ControlFn m_fnControl;
    PathFn m_fnPath;
    CLS_VideoZoom* m_pZoom = nullptr;
    QAction* m_pActSnapshot = nullptr;
    QAction* m_pActResetZoom = nullptr;
    QAction* m_pActRecordedTime = nullptr;
    QTimer* m_pClockTimer = nullptr;
};
