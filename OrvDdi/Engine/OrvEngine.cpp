#include "OrvDdi/Engine/OrvEngine.h"

#include "OrvDdi/Engine/OrvEngineOperations.h"
#include "OrvDdi/Engine/OrvGegl.h"
#include "OrvDdi/Engine/OrvOperationRegistry.h"

#include <QtCore/QByteArray>
#include <QtCore/QThread>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

// Exported by the engine's library, absent from its headers.
extern "C" int gegl_buffer_leaks(void);

namespace {

constexpr int TileEdge = 128; // measured: 256 costs half as much again
constexpr guint64 Gibibyte = guint64(1) << 30;

/// Transformations look at more of a result than they need, also at what has not been computed of one that is
/// kept: it has to be zeros then instead of nothing at all, of which the engine makes no copies. It asks the
/// environment, which must not change any more when there are threads.
const bool ResultsBeginAsZeros = qputenv("GEGL_OPERATION_INIT_OUTPUT", "1");

enum class Phase { NotStarted, Running, Ended };

std::atomic<Phase> State{Phase::NotStarted};
std::mutex WarmUpMutex;
std::thread WarmUpThread;

/// A recursive lock that serves threads in the order in which they came: a thread that renders piece after
/// piece must not keep the window waiting for more than the piece at hand.
class FairMutex {
public:
    void lock()
    {
        const std::thread::id Self = std::this_thread::get_id();
        std::unique_lock<std::mutex> Guard(m_Mutex);
        if (m_Depth > 0 && m_Owner == Self) {
            ++m_Depth;
            return;
        }
        const quint64 Ticket = m_NextTicket++;
        m_Changed.wait(Guard, [&] { return m_Serving == Ticket; });
        m_Owner = Self;
        m_Depth = 1;
    }

    void unlock()
    {
        const std::lock_guard<std::mutex> Guard(m_Mutex);
        if (--m_Depth > 0)
            return;
        ++m_Serving;
        m_Changed.notify_all();
    }

private:
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::thread::id m_Owner;
    int m_Depth = 0;
    quint64 m_NextTicket = 0, m_Serving = 0;
};

FairMutex& engineMutex()
{
    // Never destroyed: buffers held by static objects are let go later than anything here.
    static auto* pMutex = new FairMutex;
    return *pMutex;
}

guint64 machineMemory()
{
#ifdef Q_OS_UNIX
    const long Pages = sysconf(_SC_PHYS_PAGES);
    const long PageSize = sysconf(_SC_PAGESIZE);
    if (Pages > 0 && PageSize > 0)
        return guint64(Pages) * guint64(PageSize);
#endif
    return 8 * Gibibyte;
}

/// Half of the memory: what exceeds the cache is swapped to disk, at a tenth of the speed.
guint64 tileCacheSize()
{
    return std::max(machineMemory() / 2, Gibibyte / 2);
}

void startLocked()
{
    if (State != Phase::NotStarted)
        return;
    gegl_init(nullptr, nullptr);
    g_object_set(gegl_config(), "tile-width", TileEdge, "tile-height", TileEdge, "tile-cache-size",
        tileCacheSize(), "threads", std::clamp(QThread::idealThreadCount(), 1, 64), "mipmap-rendering", TRUE,
        "use-opencl", FALSE, nullptr);
    OrvEngineOperations::registerAll();
    State = Phase::Running;
}

void joinWarmUp()
{
    const std::lock_guard<std::mutex> Guard(WarmUpMutex);
    if (WarmUpThread.joinable())
        WarmUpThread.join();
}

/// A program that ends while the engine still starts must not tear down under its feet.
struct JoinAtExit {
    ~JoinAtExit() { joinWarmUp(); }
} JoinWarmUpAtExit;

} // namespace

void OrvEngine::start()
{
    const std::lock_guard<FairMutex> Guard(engineMutex());
    startLocked();
}

void OrvEngine::warmUp()
{
    const std::lock_guard<std::mutex> Guard(WarmUpMutex);
    if (State == Phase::NotStarted && !WarmUpThread.joinable())
        WarmUpThread = std::thread([] { OrvOperationRegistry::instance(); });
}

bool OrvEngine::isStarted()
{
    return State == Phase::Running;
}

int OrvEngine::shutdown()
{
    joinWarmUp();
    const std::lock_guard<FairMutex> Guard(engineMutex());
    if (State != Phase::Running)
        return 0;
    OrvEngineOperations::release();
    const int Leaks = gegl_buffer_leaks();
    gegl_exit();
    State = Phase::Ended;
    return Leaks;
}

OrvEngine::Lock::Lock()
{
    engineMutex().lock();
    startLocked();
}

OrvEngine::Lock::~Lock()
{
    engineMutex().unlock();
}
