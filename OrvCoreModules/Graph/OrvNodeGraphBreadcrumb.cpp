#include "OrvCoreModules/Graph/OrvNodeGraphBreadcrumb.h"

#include "OrvCoreModules/Graph/OrvNodeLook.h"

#include "OrvCore/Network/OrvShaderNetwork.h"
#include "OrvCore/Project/OrvGeoEntity.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>

namespace {

QString nameOf(const OrvShaderNetwork* pNetwork)
{
    if (const OrvSnBaseNode* pContainer = pNetwork->container())
        return OrvNodeLook::titleOf(pContainer);
    const OrvGeoEntity* pEntity = pNetwork->geoEntity();
    return pEntity ? pEntity->name() : QString();
}

} // namespace

OrvNodeGraphBreadcrumb::OrvNodeGraphBreadcrumb(QWidget* pParent)
    : QWidget(pParent)
    , m_pLayout(new QHBoxLayout(this))
{
    m_pLayout->setContentsMargins(0, 0, 0, 0);
    m_pLayout->setSpacing(2);
}

void OrvNodeGraphBreadcrumb::showWayTo(OrvShaderNetwork* pNetwork)
{
    // One of the buttons may be in the middle of its click.
    while (QLayoutItem* pOld = m_pLayout->takeAt(0)) {
        pOld->widget()->hide();
        pOld->widget()->deleteLater();
        delete pOld;
    }
    QVector<OrvShaderNetwork*> Way;
    for (OrvShaderNetwork* pStep = pNetwork; pStep; pStep = pStep->parentNetwork())
        Way.prepend(pStep);
    for (OrvShaderNetwork* pStep : qAsConst(Way))
        addStep(pStep, pStep == pNetwork);
}

void OrvNodeGraphBreadcrumb::addStep(OrvShaderNetwork* pNetwork, bool Last)
{
    if (Last) {
        auto* pHere = new QLabel(nameOf(pNetwork), this);
        pHere->setContentsMargins(4, 0, 4, 0);
        m_pLayout->addWidget(pHere);
        return;
    }
    auto* pButton = new QToolButton(this);
    pButton->setAutoRaise(true);
    pButton->setText(nameOf(pNetwork));
    const QPointer<OrvShaderNetwork> pTarget = pNetwork;
    connect(pButton, &QToolButton::clicked, this, [this, pTarget] {
        if (pTarget)
            Q_EMIT networkChosen(pTarget);
    });
    m_pLayout->addWidget(pButton);
    m_pLayout->addWidget(new QLabel(QString(QChar(0x203a)), this));
}

#include "moc_OrvNodeGraphBreadcrumb.cpp"
