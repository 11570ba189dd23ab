#include "Orvi/OrvListPalette.h"

#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QToolButton>

OrvListPalette::OrvListPalette(const QString& Title, int IconEdge, QWidget* pParent)
    : OrvPalette(pParent)
    , m_pList(new QListWidget)
    , m_pButtons(new QHBoxLayout)
{
    m_pList->setFrameShape(QFrame::NoFrame);
    m_pList->setIconSize(QSize(IconEdge, IconEdge));
    m_pList->setEditTriggers(QAbstractItemView::EditKeyPressed);

    auto* pBody = new QWidget;
    auto* pColumn = new QVBoxLayout(pBody);
    pColumn->setContentsMargins(0, 0, 0, 0);
    pColumn->setSpacing(0);
    pColumn->addWidget(m_pList);
    m_pButtons->setContentsMargins(4, 2, 4, 2);
    m_pButtons->addStretch();
    pColumn->addLayout(m_pButtons);
    setBodyWidget(pBody);
    setObjectName(Title);
    setWindowTitle(Title);
}

QToolButton* OrvListPalette::addButton(const QString& Icon, const QString& ToolTip)
{
    auto* pButton = new QToolButton;
    pButton->setIcon(OrvIcon::createIconFromFilename(Icon));
    pButton->setToolTip(ToolTip);
    pButton->setAutoRaise(true);
    m_pButtons->insertWidget(m_pButtons->count() - 1, pButton);
    return pButton;
}

void OrvListPalette::addKey(const QList<QKeySequence>& Keys, const std::function<void()>& Pressed)
{
    auto* pAction = new QAction(m_pList);
    pAction->setShortcuts(Keys);
    pAction->setShortcutContext(Qt::WidgetShortcut);
    m_pList->addAction(pAction);
    connect(pAction, &QAction::triggered, this, Pressed);
}

#include "moc_OrvListPalette.cpp"
