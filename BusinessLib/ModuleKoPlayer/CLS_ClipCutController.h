#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class CLS_ClipExportRunner;
class CLS_WgtPlayerSlider;
class QAction;
class QMenu;
class CLS_VideoContextMenu;
class QProgressDialog;
class QWidget;

// The two cut marks of the playing file and the export of the stretch
// between them. Marks are whole seconds of the picture on screen; the second
// mark takes in the whole second it falls in, so the picture the user saw is
// in the clip. The marks belong to one file: opening another drops them,
// stopping keeps them. Its actions carry their shortcuts on the window and go
// into any menu that asks for them.
class CLS_ClipCutController : public QObject
{
    Q_OBJECT
public:
    // Seconds of the picture on screen; false when no playback can tell.
    using PlayedTimeFunc = std::function<bool(int&)>;

    // _pWindow: where the shortcuts live; _pSlider shows the marks.
    CLS_ClipCutController(QWidget* _pWindow, CLS_WgtPlayerSlider* _pSlider,
                          PlayedTimeFunc _fnPlayedTime, QObject* _pParent = nullptr);
    ~CLS_ClipCutController() override;

    // The file now playing and its length in seconds.
    void SetFile(const QString& _qstrPath, int _iTotalSeconds);
    // Adds set first mark, set second mark, clear marks and export.
    void AddActions(QMenu* _pMenu);
    // Puts the actions into the video area's menu, as a group of their own,
    // and onto the area itself, whose keys work while it is a full-screen
    // window of its own.
    void AttachContextMenu(CLS_VideoContextMenu* _pMenu, QWidget* _pArea);

    int FirstMark() const { return m_iFirst; }
    int SecondMark() const { return m_iSecond; }
    bool IsExporting() const;

signals:
    // A short notice for the control bar's status line.
    void SignNotice(QString _qstrText);

public slots:
    void SlotSetFirstMark();
    void SlotSetSecondMark();
    void SlotClearMarks();
    // Asks where to and how, then exports with a cancellable progress.
    void SlotExport();

private slots:
    void SlotExportFinished(int _iResult, QString _qstrTarget, bool _blSoundLeftOut);

private:
    QAction* MakeAction(const char* _pText, const QString& _qstrName, const QKeySequence& _qKeys);
    bool MarkHere(int& _iMark);
    void ShowMarks();
    void RefreshActions();

    QPointer<QWidget> m_pWindow;
    QPointer<CLS_WgtPlayerSlider> m_pSlider;
    PlayedTimeFunc m_fnPlayedTime;
    QString m_qstrFile;
    int m_iTotal = 0;
    int m_iFirst = -1;
    int m_iSecond = -1;
    QAction* m_pActFirst = nullptr;
    QAction* m_pActSecond = nullptr;
    QAction* m_pActClear = nullptr;
    QAction* m_pActExport = nullptr;
    CLS_ClipExportRunner* m_pRunner = nullptr;
    QPointer<QProgressDialog> m_pProgress;
};
