#include "OrvCoreModules/Window/OrvStatusManager.h"

#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerRendering.h"
#include "OrvCore/Object/OrvDebug.h"

#include <QtCore/QTimer>

#include <memory>

namespace {

constexpr int RefusalDuration = 8000; // ms
constexpr int CancelledDuration = 4000;

/// One report from the first step to the last; whoever does the work knows no window.
bool showRenderingProgress(int Done, int Total)
{
    static std::unique_ptr<OrvStatusManager::AutoProgress> s_pReport;
    if (!s_pReport) {
        s_pReport = std::make_unique<OrvStatusManager::AutoProgress>(
            OrvStatusManager::tr("Computing pixels..."), Total);
        s_pReport->setCancellable(true);
    }
    s_pReport->setValue(Done);
    const bool Cancelled = s_pReport->isCancelled();
    if (Cancelled || Done >= Total)
        s_pReport.reset();
    if (Cancelled)
        OrvStatusManager::instance().showMessage(OrvStatusManager::tr("Cancelled"), CancelledDuration);
    return !Cancelled;
}

} // namespace

OrvStatusManager::OrvStatusManager()
{
    connect(&OrvLayerManager::instance(), &OrvLayerManager::refused, this,
        [this](const QString& Reason) { showMessage(Reason, RefusalDuration); });
    OrvLayerRendering::setProgress(showRenderingProgress);
}

OrvStatusManager& OrvStatusManager::instance()
{
    static auto* pInstance = new OrvStatusManager;
    return *pInstance;
}

QString OrvStatusManager::text() const
{
    return m_pInnermost ? m_pInnermost->text() : m_Message;
}

void OrvStatusManager::showMessage(const QString& Text, int Duration)
{
    m_Message = Text;
    const int Number = ++m_MessageNumber;
    Q_EMIT textChanged(text());
    if (Duration <= 0)
        return;
    QTimer::singleShot(Duration, this, [this, Number] {
        if (Number == m_MessageNumber)
            showMessage(QString());
    });
}

void OrvStatusManager::cancel()
{
    for (AutoProgress* pProgress = m_pInnermost; pProgress; pProgress = pProgress->m_pOuter) {
        if (pProgress->m_Cancellable)
            pProgress->m_Cancelled = true;
    }
}

void OrvStatusManager::enter(AutoProgress* pProgress)
{
    pProgress->m_pOuter = m_pInnermost;
    m_pInnermost = pProgress;
    Q_EMIT textChanged(text());
}

void OrvStatusManager::leave(AutoProgress* pProgress)
{
    if (m_pInnermost != pProgress) {
        OrvDebug("OrvStatusManager", __LINE__, QStringLiteral("[ !! ] Progress reports end out of order"),
            false, false);
        for (AutoProgress* pInner = m_pInnermost; pInner; pInner = pInner->m_pOuter) {
            if (pInner->m_pOuter == pProgress)
                pInner->m_pOuter = pProgress->m_pOuter;
        }
        return;
    }
    m_pInnermost = pProgress->m_pOuter;
    Q_EMIT textChanged(text());
    if (!pProgress->m_BarShown)
        return;
    // The outer report's bar had made room for this one's.
    if (m_pInnermost && m_pInnermost->m_BarShown)
        Q_EMIT progressChanged(m_pInnermost->m_Value, m_pInnermost->m_Minimum, m_pInnermost->m_Maximum,
            m_pInnermost->m_Cancellable);
    else
        Q_EMIT progressFinished();
}

OrvStatusManager::AutoProgress::AutoProgress(const QString& Text, int Maximum, int Minimum, int DelaySeconds)
    : m_Text(Text)
    , m_Maximum(Maximum)
    , m_Minimum(Minimum)
    , m_Value(Minimum)
    , m_Delay(qint64(DelaySeconds) * 1000)
{
    m_Age.start();
    instance().enter(this);
}

OrvStatusManager::AutoProgress::~AutoProgress()
{
    instance().leave(this);
}

void OrvStatusManager::AutoProgress::setValue(int Value)
{
    const int Bounded = qBound(m_Minimum, Value, qMax(m_Minimum, m_Maximum));
    if (m_BarShown && Bounded == m_Value)
        return;
    m_Value = Bounded;
    if (!m_BarShown && m_Age.elapsed() < m_Delay)
        return;
    m_BarShown = true;
    if (instance().m_pInnermost == this)
        Q_EMIT instance().progressChanged(m_Value, m_Minimum, m_Maximum, m_Cancellable);
}

#include "moc_OrvStatusManager.cpp"
