#pragma once

#include "CLS_ViewBasic.h"

#include <QJsonObject>
#include <QPoint>
#include <QString>
#include <QTranslator>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;
class CLS_WgtPlayerMainBody;
class CLS_WgtPlayerTopBar;

namespace Ui {
class CLS_DlgQuillPlayer;
}

// The player's frameless top-level window: its own title bar, the video area
// (which can go full screen on its own), the translation of the user
// interface, and the suite's requests to open a file.
class CLS_DlgQuillPlayer : public CLS_ViewBasic
{
    Q_OBJECT
public:
    explicit CLS_DlgQuillPlayer(QWidget* _pParent = nullptr);
    // _jsonStartParams: "Language", "Skin", "InPlayBack".
    CLS_DlgQuillPlayer(QWidget* _pParent, const QJsonObject& _jsonStartParams);
    ~CLS_DlgQuillPlayer() override;

    const char* GetModuleCode() override;
    void InitUi() override;
    void InitConnect() override;
    bool HandleTask(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                    QVariantMap& _qmapResult) override;
    // Answers "OpenVideoFile" and "SetLocalVideoToPlayUrl" itself. Always
    // false: the answer says nothing about whether the request was acted on.
    bool DoBusinessRequest(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                           const QString& _qstrBusinessUUID) override;

signals:
    void SignOpenVideoFile(QString _qstrFilePath);

public slots:
    void SlotOpenVideoFile(QString _qstrFilePath);

private slots:
    void SlotMiniSize();
    void SlotMaxSize();
    void SlotAppClose();
    void SlotFullScreen();
    void SlotEscapeFullScreen();

protected:
    bool event(QEvent* _pEvent) override;
    void mousePressEvent(QMouseEvent* _pEvent) override;
    void mouseMoveEvent(QMouseEvent* _pEvent) override;
    void mouseReleaseEvent(QMouseEvent* _pEvent) override;

private:
    void Construct();
    void ApplyStartParams(const QJsonObject& _jsonStartParams);
    void LoadLanuage();
    void InitLayout();
    void EnterFullScreen();
    void ExitFullScreen();

    Ui::CLS_DlgQuillPlayer* ui = nullptr;
    bool InPlayBack = false;
    QVBoxLayout* m_pOuterLayout = nullptr;
    QHBoxLayout* m_pInnerLayout = nullptr;
    QLabel* m_pLabelLeft = nullptr;
    QLabel* m_pLabelRight = nullptr;
    QLabel* m_pLabelBottom = nullptr;
    bool m_blFullScreen = false;
    bool m_blDragging = false;
    QPoint m_ptDragOffset;
    CLS_WgtPlayerTopBar* m_pTopBar = nullptr;
    CLS_WgtPlayerMainBody* m_pMainBody = nullptr;
    QTranslator m_translator;
};
