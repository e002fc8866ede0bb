#include "CLS_Player7ListItemDelegate.h"

#include "KoServices.h"

#include <QPainter>
#include <QPolygon>

namespace {

constexpr int kTextEntryHeight = 30;
constexpr int kMarkerEntryHeight = 10;
constexpr int kFontPointSize = 9;

QString NamedColor(const char* _pGroup, const char* _pKey)
{
    return QString::fromStdString(KoService::GetNamedColor(_pGroup, _pKey, std::string()));
}

}  // namespace

CLS_Player7ListItemDelegate::CLS_Player7ListItemDelegate(QObject* _pParent)
    : QStyledItemDelegate(_pParent),
      m_qstrFontFamily(QStringLiteral("Microsoft YaHei")),
      m_qstrBorderColor(NamedColor("Common", "<BgColor_Common>")),
      // The same key once more: border and fill are separate settings that
      // happen to share a colour today.
      m_qstrFillColor(NamedColor("Common", "<BgColor_Common>")),
      m_qstrTextColor(NamedColor("Common", "<FontColor_Common>")),
      m_qstrHighlightColor(NamedColor("ModulePassengerFlowStatistic", "<FontColor_Pass>"))
{}

void CLS_Player7ListItemDelegate::paint(QPainter* _pPainter, const QStyleOptionViewItem& _option,
                                        const QModelIndex& _index) const
{
    if (!_pPainter || !_index.isValid()) return;

    _pPainter->save();
    const QString qstrText = _index.data(kTextRole).toString();
    const QRect& qrc = _option.rect;
    if (!qstrText.isEmpty()) {
        _pPainter->setRenderHint(QPainter::Antialiasing, true);
        QFont font(m_qstrFontFamily);
        font.setPointSize(kFontPointSize);
        _pPainter->setFont(font);

        _pPainter->setPen(QColor(m_qstrBorderColor));
        _pPainter->setBrush(QBrush(QColor(m_qstrFillColor), Qt::SolidPattern));
        _pPainter->drawRect(qrc);

        _pPainter->setPen(QColor(m_qstrTextColor));
        _pPainter->drawText(qrc, Qt::AlignCenter, qstrText);
        if (_option.state.testFlag(QStyle::State_Selected) ||
            _option.state.testFlag(QStyle::State_MouseOver)) {
            _pPainter->setPen(QColor(m_qstrHighlightColor));
            _pPainter->drawText(qrc, Qt::AlignCenter, qstrText);
        }
    } else {
        // The empty entry is a marker, not a choice: a triangle pointing down
        // across the middle half of the cell.
        _pPainter->setPen(QColor(m_qstrBorderColor));
        _pPainter->setBrush(QBrush(QColor(m_qstrFillColor), Qt::SolidPattern));
        const QPolygon qpolyMarker(
            {QPoint(qrc.left() + qrc.width() / 4, qrc.top()),
             QPoint(qrc.left() + 3 * qrc.width() / 4, qrc.top()),
             QPoint(qrc.left() + qrc.width() / 2, qrc.top() + qrc.height())});
        _pPainter->drawPolygon(qpolyMarker, Qt::OddEvenFill);
    }
    _pPainter->restore();
}

QSize CLS_Player7ListItemDelegate::sizeHint(const QStyleOptionViewItem& _option,
                                            const QModelIndex& _index) const
{
    const bool blHasText = !_index.data(kTextRole).toString().isEmpty();
    return QSize(_option.rect.width(), blHasText ? kTextEntryHeight : kMarkerEntryHeight);
}
