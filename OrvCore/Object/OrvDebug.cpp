#include "OrvCore/Object/OrvDebug.h"

#include <QtCore/QMutex>
#include <QtCore/QtDebug>

namespace {

struct Channel {
    QMutex Mutex;
    std::function<void(const OrvDebugMessage&)> Sink;
};

// Never destroyed: messages come until the last library is unloaded.
Channel& channel()
{
    static Channel* pChannel = new Channel;
    return *pChannel;
}

} // namespace

void OrvDebug(const char* pFile, int Line, const QString& Message, bool, bool)
{
    Channel& Output = channel();
    std::function<void(const OrvDebugMessage&)> Sink;
    {
        const QMutexLocker Locker(&Output.Mutex);
        Sink = Output.Sink;
    }
    if (Sink)
        Sink({QString::fromLatin1(pFile), Line, Message});
    qDebug().noquote() << QStringLiteral("%1:%2: %3").arg(QLatin1String(pFile)).arg(Line).arg(Message);
}

void OrvSetDebugSink(std::function<void(const OrvDebugMessage&)> Sink)
{
    const QMutexLocker Locker(&channel().Mutex);
    channel().Sink = std::move(Sink);
}
