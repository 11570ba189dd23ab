#include "OrvCoreModules/Window/OrvPalette.h"

#include "OrvCoreModules/Window/OrvContextHelp.h"
#include "OrvCoreModules/Window/OrvCustomFusionStyle.h"
#include "OrvCoreModules/Window/OrvPaletteHeader.h"

#include <QtGui/QPainter>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int LeaveDelay = 200; // ms between leaving a visitor and its closing
constexpr int FrameWidth = 1;
constexpr int ContentMargin = 3; // keeps the body off the title bar and the edges

/// The window itself, or a dialog or menu that it has opened.
bool belongsTo(const QWidget* pWidget, const QWidget* pOwner)
{
    for (; pWidget; pWidget = pWidget->parentWidget()) {
        if (pWidget == pOwner)
            return true;
    }
    return false;
}

} // namespace

OrvPalette::OrvPalette(QWidget* pParent)
    : QDockWidget(pParent)
{
    construct();
}

OrvPalette::OrvPalette(const QString& Title, QWidget* pParent, const QString& Kind)
    : QDockWidget(Title, pParent)
    , m_Kind(Kind)
{
    setObjectName(Kind.isEmpty() ? Title : Kind + QLatin1Char('/') + Title);
    construct();
}

void OrvPalette::construct()
{
    m_Header = new OrvPaletteHeader(this);
    setTitleBarWidget(m_Header);
    m_LeaveTimer.setSingleShot(true);
    m_LeaveTimer.setInterval(LeaveDelay);
    connect(&m_LeaveTimer, &QTimer::timeout, this, &OrvPalette::closeIfLeft);
    // Floating palettes have no frame of the window system, so they draw a line of their own around.
    connect(this, &QDockWidget::topLevelChanged, this, [this](bool Floating) {
        const int Margin = Floating ? FrameWidth : 0;
        setContentsMargins(Margin, Margin, Margin, Margin);
    });
}

void OrvPalette::setBodyWidget(QWidget* pBody)
{
    m_Body = pBody;
    auto* pFrame = new QWidget(this);
    auto* pLayout = new QVBoxLayout(pFrame);
    pLayout->setContentsMargins(ContentMargin, ContentMargin, ContentMargin, ContentMargin);
    pLayout->addWidget(pBody);
    setWidget(pFrame);
}

void OrvPalette::setHeaderTitle(const QString& Title)
{
    if (Title == m_HeaderTitle)
        return;
    m_HeaderTitle = Title;
    Q_EMIT headerChanged();
}

QString OrvPalette::headerTitle() const
{
    return m_HeaderTitle.isEmpty() ? windowTitle() : m_HeaderTitle;
}

void OrvPalette::setPaletteIcon(const QIcon& Icon)
{
    m_Icon = Icon;
    setWindowIcon(Icon);
    Q_EMIT headerChanged();
}

void OrvPalette::setContextHelpKey(const QString& Key)
{
    m_ContextHelpKey = Key;
    Q_EMIT headerChanged();
}

void OrvPalette::addRelatedPalette(OrvPalette* pPalette)
{
    if (pPalette && pPalette != this && !m_RelatedPalettes.contains(pPalette))
        m_RelatedPalettes.append(pPalette);
}

QList<OrvPalette*> OrvPalette::relatedPalettes() const
{
    QList<OrvPalette*> Palettes;
    for (const QPointer<OrvPalette>& pPalette : m_RelatedPalettes) {
        if (pPalette)
            Palettes.append(pPalette);
    }
    return Palettes;
}

void OrvPalette::setPinnable(bool Pinnable)
{
    if (Pinnable == m_Pinnable)
        return;
    m_Pinnable = Pinnable;
    Q_EMIT headerChanged();
}

void OrvPalette::setPinned(bool Pinned)
{
    if (Pinned == m_Pinned)
        return;
    m_Pinned = Pinned;
    Q_EMIT pinnedChanged(Pinned);
}

void OrvPalette::fitToContents()
{
    if (!isFloating())
        return;
    const QSize Available = screen()->availableSize();
    resize(sizeHint().boundedTo(Available).expandedTo(minimumSizeHint()));
}

void OrvPalette::open()
{
    show();
    raise();
    if (isFloating())
        activateWindow();
}

void OrvPalette::showContextHelp()
{
    OrvContextHelp::show(m_ContextHelpKey, m_Header->mapToGlobal(m_Header->rect().bottomLeft()), this);
}

bool OrvPalette::isInUse() const
{
    if (QApplication::mouseButtons() != Qt::NoButton || frameGeometry().contains(QCursor::pos()))
        return true;
    // What the user is in now: a menu, a dialog, another window.
    for (const QWidget* pInFront : {QApplication::activePopupWidget(), QApplication::activeModalWidget(),
             QApplication::activeWindow()}) {
        if (belongsTo(pInFront, this))
            return true;
    }
    for (const OrvPalette* pRelated : relatedPalettes()) {
        if (pRelated->isVisible() && pRelated->rect().contains(pRelated->mapFromGlobal(QCursor::pos())))
            return true;
    }
    return false;
}

void OrvPalette::closeIfLeft()
{
    if (!isVisitor() || !isVisible())
        return;
    if (!isInUse()) {
        close();
        return;
    }
    // While it is the active window, leaving it brings a new event; a menu or a related palette does not.
    if (QApplication::activeWindow() != this)
        m_LeaveTimer.start();
}

bool OrvPalette::event(QEvent* pEvent)
{
    switch (pEvent->type()) {
    case QEvent::WindowDeactivate:
    case QEvent::Leave:
        if (isVisitor())
            m_LeaveTimer.start();
        m_Header->update();
        break;
    case QEvent::WindowActivate:
        m_Header->update();
        break;
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
        Q_EMIT paletteActiveChanged(isPaletteActive());
        break;
    case QEvent::ParentChange:
        // A window that is put into a dock by its main window is told of it in no other way.
        Q_EMIT headerChanged();
        break;
    case QEvent::WhatsThis:
        showContextHelp();
        return true;
    case QEvent::QueryWhatsThis:
        pEvent->setAccepted(!m_ContextHelpKey.isEmpty());
        return true;
    default:
        break;
    }
    return QDockWidget::event(pEvent);
}

void OrvPalette::resizeEvent(QResizeEvent* pEvent)
{
    QDockWidget::resizeEvent(pEvent);
    Q_EMIT sizeChanged();
}

void OrvPalette::paintEvent(QPaintEvent*)
{
    if (!isFloating())
        return;
    QPainter Painter(this);
    Painter.setPen(OrvCustomFusionStyle::borderColor().lighter(isActiveWindow() ? 220 : 150));
    Painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

#include "moc_OrvPalette.cpp"
