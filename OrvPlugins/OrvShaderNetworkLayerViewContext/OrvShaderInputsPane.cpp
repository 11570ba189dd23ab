#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputsPane.h"

#include "OrvCore/Channels/OrvShaderInputManager.h"
#include "OrvCore/Network/OrvShaderNetworkManager.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Shaders/OrvLayerShader.h"
#include "OrvCore/Shaders/OrvLayerShaderManager.h"
#include "OrvCoreModules/Widgets/OrvExpandableListWidget.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvLayerViewContextConstants.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPaletteSplitter.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputConnection.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputRow.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderLook.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

void report(int Line, const char* pMessage)
{
    OrvDebug("OrvShaderInputsPane", Line, QString::fromLatin1(pMessage), false, false);
}

QLabel* createText(QWidget* pParent)
{
    QLabel* pText = new QLabel(pParent);
    pText->setWordWrap(true);
    pText->setMargin(4);
    QPalette Dim = pText->palette();
    Dim.setColor(QPalette::WindowText, Dim.color(QPalette::Disabled, QPalette::Text));
    pText->setPalette(Dim);
    pText->hide();
    return pText;
}

} // namespace

OrvShaderInputsPane::OrvShaderInputsPane(QWidget* pParent)
    : QWidget(pParent)
{
    OrvExpandableListWidget* pGroup = new OrvExpandableListWidget(tr("Inputs"), this);
    pGroup->addChild(createRowsHolder());
    QWidget* pTexts = createTexts();
    QVBoxLayout* pLayout = OrvPaletteSplitter::createTightLayout(this);
    pLayout->addWidget(pGroup);
    pLayout->addWidget(pTexts);
    pLayout->addStretch(1);

    connect(pGroup, &OrvExpandableListWidget::expandedChanged, pTexts, &QWidget::setVisible);
    const OrvShaderInputManager* pChannels = &OrvShaderInputManager::instance();
    connect(
        pChannels, &OrvShaderInputManager::shaderInputRenamed, this, &OrvShaderInputsPane::updateConnections);
    connect(pChannels, &OrvShaderInputManager::currentShaderInputChanged, this,
        &OrvShaderInputsPane::updateConnections);
    refresh();
}

QWidget* OrvShaderInputsPane::createRowsHolder()
{
    QWidget* pHolder = new QWidget(this);
    m_pGrid = new QGridLayout(pHolder);
    m_pGrid->setContentsMargins(0, 0, 0, 0);
    m_pGrid->setSpacing(0);
    // The other columns speak for themselves.
    m_pInvertCaption = createText(pHolder);
    m_pInvertCaption->setText(tr("Invert"));
    m_pInvertCaption->setWordWrap(false);
    m_pInvertCaption->setAlignment(Qt::AlignRight);
    m_pInvertCaption->setMargin(1);
    m_pGrid->addWidget(m_pInvertCaption, 0, 0);
    return pHolder;
}

QWidget* OrvShaderInputsPane::createTexts()
{
    m_pMessage = createText(this);
    m_pNote = createText(this);
    // They wrap, which needs more height than the group, sized by its hint, would give them.
    QWidget* pTexts = new QWidget(this);
    QVBoxLayout* pLayout = new QVBoxLayout(pTexts);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pMessage);
    pLayout->addWidget(m_pNote);
    return pTexts;
}

OrvLayerShader* OrvShaderInputsPane::shader() const
{
    return m_pShader;
}

OrvShaderInputRow* OrvShaderInputsPane::row(const QString& InputName) const
{
    for (OrvShaderInputRow* pRow : m_Rows) {
        if (pRow->inputName() == InputName)
            return pRow;
    }
    return nullptr;
}

QString OrvShaderInputsPane::message() const
{
    return m_pMessage->text();
}

QString OrvShaderInputsPane::note() const
{
    return m_pNote->text();
}

void OrvShaderInputsPane::refresh()
{
    const OrvShaderNetwork* pNetwork = OrvShaderNetworkManager::instance().currentShaderNetwork();
    OrvLayerShader* pShader
        = pNetwork ? OrvLayerShaderManager::instance().currentLayerShader(pNetwork) : nullptr;
    QStringList Shown;
    for (const OrvShaderInputRow* pRow : qAsConst(m_Rows))
        Shown.append(pRow->inputName());
    if (pShader != m_pShader || Shown != (pShader ? pShader->inputNames() : QStringList()))
        rebuildRows(pShader);
    else
        updateConnections();

    if (!pNetwork)
        showMessage(tr("Open a project to see the inputs of its shaders here."));
    else if (!pShader)
        showMessage(tr("Choose a shader above, or add one, to connect channels to its inputs."));
    else if (m_Rows.isEmpty())
        showMessage(OrvShaderLook::whatItShows(pShader->node()));
    else
        showMessage(QString());
}

void OrvShaderInputsPane::refreshForNewShaderInput(const QString& InputName, OrvSnBaseNode* pChannelNode)
{
    refresh();
    OrvShaderInputRow* pRow = row(InputName);
    const OrvShaderInput* pChannel = pRow && m_pShader ? m_pShader->inputShaderInput(InputName) : nullptr;
    if (!pChannel || pChannel->node() != pChannelNode)
        return;
    for (QWidget* pWidget = parentWidget(); pWidget; pWidget = pWidget->parentWidget()) {
        if (auto* pArea = qobject_cast<QScrollArea*>(pWidget)) {
            pArea->ensureWidgetVisible(pRow, 0, 0);
            return;
        }
    }
}

void OrvShaderInputsPane::clear()
{
    m_pShader = nullptr;
    removeRows();
    showMessage(QString());
    showNote();
}

void OrvShaderInputsPane::removeRows()
{
    // One of them may be what asked for it.
    for (OrvShaderInputRow* pRow : qAsConst(m_Rows)) {
        pRow->hide();
        pRow->setParent(nullptr);
        pRow->deleteLater();
    }
    m_Rows.clear();
    m_pInvertCaption->hide();
}

void OrvShaderInputsPane::rebuildRows(OrvLayerShader* pShader)
{
    removeRows();
    m_pShader = pShader;
    QWidget* pHolder = m_pGrid->parentWidget();
    for (const QString& InputName : pShader ? pShader->inputNames() : QStringList()) {
        OrvShaderInputRow* pRow = new OrvShaderInputRow(pShader, InputName, pHolder);
        connect(
            pRow->enableBox(), &QCheckBox::clicked, this, &OrvShaderInputsPane::onSwitchInputEnabledChanged);
        connect(pRow->invertBox(), &QCheckBox::clicked, this, &OrvShaderInputsPane::toggleInvert);
        connect(pRow, &OrvShaderInputRow::materialChosen, this, &OrvShaderInputsPane::materialChosen);
        m_Rows.append(pRow);
        // Below the caption.
        m_pGrid->addWidget(pRow, m_Rows.size(), 0);
    }
    OrvShaderInputRow::alignColumns(m_Rows);
    m_pInvertCaption->setVisible(!m_Rows.isEmpty());
    showNote();
}

void OrvShaderInputsPane::updateConnections()
{
    for (OrvShaderInputRow* pRow : qAsConst(m_Rows))
        pRow->refresh();
    showNote();
}

void OrvShaderInputsPane::showMessage(const QString& Text)
{
    m_pMessage->setText(Text);
    m_pMessage->setVisible(!Text.isEmpty());
}

void OrvShaderInputsPane::showNote()
{
    QString Note;
    for (const OrvShaderInputRow* pRow : qAsConst(m_Rows)) {
        const QString& InputName = pRow->inputName();
        const bool Displaces = OrvLayerViewContext::DisplacementInputNames.contains(InputName) && m_pShader
            && m_pShader->isInputEnabled(InputName) && m_pShader->inputShaderInput(InputName);
        if (Displaces)
            Note = tr("%1 looks at the surroundings of every pixel, which slows painting down. Switch it off "
                      "while you do not need to see it.")
                       .arg(InputName);
    }
    m_pNote->setText(Note);
    m_pNote->setVisible(!Note.isEmpty());
}

OrvShaderInputRow* OrvShaderInputsPane::rowInUse() const
{
    const QVariant InputName
        = sender() ? sender()->property(OrvShaderInputRow::InputNameProperty) : QVariant();
    if (InputName.isValid())
        return row(InputName.toString());
    const QWidget* pFocus = QApplication::focusWidget();
    for (OrvShaderInputRow* pRow : m_Rows) {
        if (pFocus && pRow->isAncestorOf(pFocus))
            return pRow;
    }
    return nullptr;
}

void OrvShaderInputsPane::createChannel()
{
    createChannelOfKind(ChannelKind::Ordinary);
}

void OrvShaderInputsPane::createMaterialChannel()
{
    createChannelOfKind(ChannelKind::Material);
}

OrvShaderInputRow* OrvShaderInputsPane::rowForNewChannel(ChannelKind Kind) const
{
    const auto takesIt = [this, IsMaterial = Kind == ChannelKind::Material](const OrvShaderInputRow* pRow) {
        return m_pShader->isInputForMaterialsStacks(pRow->inputName()) == IsMaterial;
    };
    OrvShaderInputRow* pInUse = rowInUse();
    if (pInUse && takesIt(pInUse))
        return pInUse;
    const auto Free = std::find_if(m_Rows.cbegin(), m_Rows.cend(), [&](const OrvShaderInputRow* pRow) {
        return takesIt(pRow) && !m_pShader->inputShaderInput(pRow->inputName());
    });
    return Free != m_Rows.cend() ? *Free : nullptr;
}

void OrvShaderInputsPane::createChannelOfKind(ChannelKind Kind)
{
    if (!m_pShader) {
        report(__LINE__, "ShaderLayer is NULL");
        return;
    }
    const OrvShaderInputRow* pRow = rowForNewChannel(Kind);
    if (!pRow) {
        report(__LINE__, "Shader has no free input");
        return;
    }
    OrvShaderInputConnection::createChannel(m_pShader, pRow->inputName());
    refresh();
}

void OrvShaderInputsPane::toggleInvert(bool Inverted)
{
    const OrvShaderInputRow* pRow = rowInUse();
    if (!pRow || !pRow->shader()) {
        report(__LINE__, "Shader is NULL");
        return;
    }
    OrvShaderInputConnection::setInverted(pRow->shader(), pRow->inputName(), Inverted);
}

void OrvShaderInputsPane::onSwitchInputEnabledChanged(bool Enabled)
{
    const OrvShaderInputRow* pRow = rowInUse();
    if (!pRow || !pRow->shader()) {
        report(__LINE__, "Shader is NULL");
        return;
    }
    OrvShaderInputConnection::setEnabled(pRow->shader(), pRow->inputName(), Enabled);
}

#include "moc_OrvShaderInputsPane.cpp"
