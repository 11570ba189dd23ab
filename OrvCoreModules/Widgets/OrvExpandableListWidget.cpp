#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"

#include "OrvCoreModules/Widgets/OrvFormLayout.h"

#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

OrvExpandableListWidget::OrvExpandableListWidget(const QString& Title, QWidget* pParent)
    : QWidget(pParent)
{
    m_pHeader = new QToolButton(this);
    m_pHeader->setAutoRaise(true);
    m_pHeader->setArrowType(Qt::DownArrow);
    m_pHeader->setIconSize({10, 10});
    m_pHeader->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_pHeader->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_pHeader->setFixedHeight(22);
    m_pHeader->setFocusPolicy(Qt::TabFocus);
    QFont Bold = m_pHeader->font();
    Bold.setBold(true);
    m_pHeader->setFont(Bold);
    setTitle(Title);

    m_pContents = new QWidget(this);
    m_pContentsLayout = new OrvFormLayout(m_pContents);
    m_pContentsLayout->setContentsMargins(2, 0, 2, 2);

    QVBoxLayout* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pHeader);
    pLayout->addWidget(m_pContents);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    connect(m_pHeader, &QToolButton::clicked, this, [this] { setExpanded(!m_Expanded); });
}

QString OrvExpandableListWidget::title() const
{
    return windowTitle();
}

void OrvExpandableListWidget::setTitle(const QString& Title)
{
    // An ampersand in a name is no shortcut.
    setWindowTitle(Title);
    m_pHeader->setText(QString(Title).replace(QLatin1Char('&'), QStringLiteral("&&")));
}

void OrvExpandableListWidget::setExpanded(bool Expanded)
{
    if (m_Expanded == Expanded)
        return;
    m_Expanded = Expanded;
    m_pHeader->setArrowType(Expanded ? Qt::DownArrow : Qt::RightArrow);
    m_pContents->setVisible(Expanded);
    Q_EMIT expandedChanged(Expanded);
}

void OrvExpandableListWidget::addChild(QLayout* pLayout, const QString& Label, const QString& ToolTip)
{
    if (!pLayout)
        return;
    QWidget* pHolder = new QWidget(m_pContents);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pHolder->setLayout(pLayout);
    addChild(pHolder, Label, ToolTip);
}

void OrvExpandableListWidget::addChild(QWidget* pWidget, const QString& Label, const QString& ToolTip)
{
    if (!pWidget)
        return;
    if (!ToolTip.isEmpty())
        pWidget->setToolTip(ToolTip);
    if (Label.isEmpty()) {
        m_pContentsLayout->addRow(pWidget);
        return;
    }
    QLabel* pLabel = new QLabel(Label, m_pContents);
    pLabel->setToolTip(ToolTip);
    // Beside a form it stands in line with the form's first row.
    const auto* pForm = qobject_cast<const QFormLayout*>(pWidget->layout());
    QLayoutItem* pFirst = pForm ? pForm->itemAt(0, QFormLayout::FieldRole) : nullptr;
    if (const QWidget* pField = pFirst ? pFirst->widget() : nullptr) {
        pField->ensurePolished();
        pLabel->setMaximumHeight(qMin(pField->sizeHint().height(), pField->maximumHeight()));
    }
    m_pContentsLayout->addRow(pLabel, pWidget);
}

#include "moc_OrvExpandableListWidget.cpp"
