#include "OrvCoreModules/Window/OrvProgressDialog.h"

#include "OrvCoreModules/Window/OrvApplication.h"

#include <QtWidgets/QProgressDialog>

namespace {

constexpr qint64 ShowDelay = 500; // ms; shorter work is not worth a dialog
constexpr qint64 EventInterval = 40; // ms between two looks at the event queue

} // namespace

OrvProgressDialog::OrvProgressDialog(const QString& Text, QWidget* pParent)
{
    m_Age.start();
    if (!OrvApplication::popupsAllowed())
        return;
    m_Dialog.reset(new QProgressDialog(Text, QProgressDialog::tr("Cancel"), 0, 0, pParent));
    // The dialog would show and hide itself by its own guess of the remaining time.
    m_Dialog->setMinimumDuration(std::numeric_limits<int>::max());
    m_Dialog->setAutoClose(false);
    m_Dialog->setAutoReset(false);
    m_Dialog->setWindowModality(Qt::ApplicationModal);
}

OrvProgressDialog::~OrvProgressDialog() = default;

void OrvProgressDialog::setText(const QString& Text)
{
    if (m_Dialog)
        m_Dialog->setLabelText(Text);
}

bool OrvProgressDialog::step(int Done, int Total)
{
    if (!m_Dialog || m_Cancelled)
        return !m_Cancelled;
    const qint64 Now = m_Age.elapsed();
    if (Now - m_LastEventRun < EventInterval)
        return true;
    m_LastEventRun = Now;
    if (!m_Dialog->isVisible() && Now >= ShowDelay)
        m_Dialog->show();
    if (m_Dialog->maximum() != Total)
        m_Dialog->setMaximum(Total);
    m_Dialog->setValue(Done);
    // Until the modal dialog is up, clicks and keys would reach the document under work.
    QCoreApplication::processEvents(
        m_Dialog->isVisible() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents,
        int(EventInterval));
    m_Cancelled = m_Cancelled || m_Dialog->wasCanceled();
    return !m_Cancelled;
}
