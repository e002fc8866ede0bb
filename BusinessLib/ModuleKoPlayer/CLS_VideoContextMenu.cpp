#include "CLS_VideoContextMenu.h"

#include <QAction>
#include <QMenu>
#include <QPoint>
#include <QWidget>

CLS_VideoContextMenu::CLS_VideoContextMenu(QWidget* _pArea) : QObject(_pArea), m_pArea(_pArea)
{
    m_pMenu = new QMenu(_pArea);
    m_pMenu->setObjectName(QStringLiteral("menu_video"));
    connect(m_pMenu, &QMenu::aboutToShow, this, &CLS_VideoContextMenu::SignAboutToShow);
    // The render widget inside ignores the event, so it reaches the area.
    m_pArea->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_pArea, &QWidget::customContextMenuRequested, this, &CLS_VideoContextMenu::Popup);
}

CLS_VideoContextMenu::~CLS_VideoContextMenu() = default;

QAction* CLS_VideoContextMenu::AddEntry(const QString& _qstrName, const QString& _qstrText,
                                        const QKeySequence& _keys)
{
    QAction* pAction = m_pMenu->addAction(_qstrText);
    pAction->setObjectName(_qstrName);
    if (!_keys.isEmpty()) {
        pAction->setShortcut(_keys);
        pAction->setShortcutContext(Qt::WindowShortcut);
        m_pArea->addAction(pAction);
    }
    return pAction;
}

QAction* CLS_VideoContextMenu::AddToggle(const QString& _qstrName, const QString& _qstrText,
                                         bool _blChecked)
{
    QAction* pAction = AddEntry(_qstrName, _qstrText);
    pAction->setCheckable(true);
    pAction->setChecked(_blChecked);
    return pAction;
}

void CLS_VideoContextMenu::AddSeparator()
{
    if (!m_pMenu->isEmpty()) m_pMenu->addSeparator();
}

QAction* CLS_VideoContextMenu::Entry(const QString& _qstrName) const
{
    return m_pMenu->findChild<QAction*>(_qstrName, Qt::FindDirectChildrenOnly);
}

void CLS_VideoContextMenu::Popup(const QPoint& _posArea)
{
    m_pMenu->popup(m_pArea->mapToGlobal(_posArea));
}
