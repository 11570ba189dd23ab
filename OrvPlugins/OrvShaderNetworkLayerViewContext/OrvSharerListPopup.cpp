#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvSharerListPopup.h"

#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCoreModules/Widgets/OrvMoveWidgetToCursor.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextManager.h"

#include <QtCore/QPointer>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QVBoxLayout>

namespace {

const QSize LargestSize(480, 320);
constexpr int Margin = 2;

} // namespace

OrvSharerListPopup::OrvSharerListPopup(QWidget* pParent)
    : QFrame(pParent, Qt::Popup)
    , m_List(new QListWidget(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    setStyleSheet(OrvLayerViewContext::FramedWidgetStyleSheet);
    m_List->setStyleSheet(QStringLiteral("QListWidget { border: none; }"));
    m_List->setMinimumSize(1, 1);
    m_List->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_List->setTextElideMode(Qt::ElideMiddle);
    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(Margin, Margin, Margin, Margin);
    pLayout->addWidget(m_List);
    // The manager closes this popup once it has gone to the sharer.
    connect(m_List, SIGNAL(itemClicked(QListWidgetItem*)), &OrvLayerViewContextManager::instance(),
        SLOT(makeSharerInfoItemCurrent(QListWidgetItem*)));
}

void OrvSharerListPopup::addHeading(const QString& Heading)
{
    QListWidgetItem* pItem = new QListWidgetItem(Heading, m_List);
    pItem->setFlags(Qt::NoItemFlags);
    pItem->setForeground(palette().text());
    QFont Font = m_List->font();
    Font.setBold(true);
    pItem->setFont(Font);
}

void OrvSharerListPopup::addSharer(const QString& Path, OrvSnBaseNode* pNode)
{
    QListWidgetItem* pItem = new QListWidgetItem(Path, m_List);
    pItem->setToolTip(Path);
    // The project may close under the list; the item then stands for nothing.
    pItem->setData(Qt::UserRole, QVariant::fromValue(QPointer<QObject>(pNode)));
    m_HasSharers = true;
}

void OrvSharerListPopup::popup()
{
    if (!m_HasSharers) {
        deleteLater();
        return;
    }
    resize(contentsSize().boundedTo(LargestSize));
    OrvMoveWidgetToCursor(this, QPoint());
    show();
    m_List->setFocus(Qt::PopupFocusReason);
}

QSize OrvSharerListPopup::contentsSize() const
{
    int Height = 0;
    for (int Row = 0; Row < m_List->count(); ++Row)
        Height += m_List->sizeHintForRow(Row);
    const int Around = 2 * (Margin + frameWidth());
    // Once the list scrolls, its bar takes width from the paths.
    const int BarWidth
        = Height + Around > LargestSize.height() ? m_List->verticalScrollBar()->sizeHint().width() : 0;
    return {m_List->sizeHintForColumn(0) + BarWidth + Around, Height + Around};
}

#include "moc_OrvSharerListPopup.cpp"
