// Declares happens-before edges that the thread sanitizer cannot see: Debian's Qt and GLib are not instrumented and
// lock with futexes. Each function here is interposed: it calls the library function of the same name and declares the
// edges that the library documents, no others. Only programs of the preset `thread` contain this file.

#include <QMutex>
#include <QObject>
#include <QThread>
#include <QThreadStorage>

#include <cstdarg>
#include <dlfcn.h>
#include <glib.h>
#include <sched.h>

extern "C" void __tsan_acquire(void *at);
extern "C" void __tsan_release(void *at);
extern "C" int __clone(int (*run)(void *), void *stack, int flags, void *argument, ...); // glibc's own

namespace {

template <typename Function>
Function *behind(const char *symbol)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, symbol));
}

// A queued call. Everything before its posting happens before the call; the call happens before its destruction.
class QueuedCall : public QtPrivate::QSlotObjectBase {
public:
    explicit QueuedCall(QtPrivate::QSlotObjectBase *slot)
        : QSlotObjectBase(&run)
        , m_slot(slot)
    {
    }

private:
    static void run(int which, QSlotObjectBase *self, QObject *receiver, void **arguments, bool *)
    {
        auto *const call = static_cast<QueuedCall *>(self);
        __tsan_acquire(call);
        if (which == Destroy) {
            call->m_slot->destroyIfLastRef();
            delete call;
        } else if (which == QSlotObjectBase::Call) {
            call->m_slot->call(receiver, arguments);
            __tsan_release(call);
        }
    }

    QSlotObjectBase *const m_slot;
};

// Thread-local data that is destroyed last: its destructor declares the end of the thread.
struct LastBreath {
    explicit LastBreath(QThread *ofThread)
        : thread(ofThread)
    {
    }
    ~LastBreath() { __tsan_release(thread); }
    QThread *const thread;
};

bool seenToEnd(const QThread *thread, bool hasEnded)
{
    if (hasEnded)
        __tsan_acquire(const_cast<QThread *>(thread));
    return hasEnded;
}

} // namespace

// Qt: queued calls, the end of a thread, the slow paths of QMutex (its fast paths are inline).

bool QMetaObject::invokeMethodImpl(QObject *receiver, QtPrivate::QSlotObjectBase *slot, Qt::ConnectionType type,
                                   void *result)
{
    static const auto invoke = behind<bool(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    auto *const call = new QueuedCall(slot);
    call->ref();
    __tsan_release(call);
    const bool found = invoke(receiver, call, type, result);
    if (type == Qt::BlockingQueuedConnection)
        __tsan_acquire(call);
    call->destroyIfLastRef();
    return found;
}

void QThread::start(Priority priority)
{
    static const auto start = behind<void(QThread *, Priority)>("_ZN7QThread5startENS_8PriorityE");
    connect(
        this, &QThread::started, this,
        [this] {
            static QThreadStorage<LastBreath *> breaths;
            breaths.setLocalData(new LastBreath(this));
        },
        Qt::ConnectionType(Qt::DirectConnection | Qt::SingleShotConnection));
    start(this, priority);
}

bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto wait = behind<bool(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    return seenToEnd(this, wait(this, deadline));
}

bool QThread::isRunning() const
{
    static const auto isRunning = behind<bool(const QThread *)>("_ZNK7QThread9isRunningEv");
    return !seenToEnd(this, !isRunning(this));
}

void QBasicMutex::lockInternal()
{
    static const auto lock = behind<void(QBasicMutex *)>("_ZN11QBasicMutex12lockInternalEv");
    lock(this);
    __tsan_acquire(this);
}

void QBasicMutex::unlockInternal() noexcept
{
    static const auto unlock = behind<void(QBasicMutex *)>("_ZN11QBasicMutex14unlockInternalEv");
    __tsan_release(this);
    unlock(this);
}

// GLib, for GStreamer.

void g_mutex_lock(GMutex *mutex)
{
    static const auto lock = behind<void(GMutex *)>("g_mutex_lock");
    lock(mutex);
    __tsan_acquire(mutex);
}

gboolean g_mutex_trylock(GMutex *mutex)
{
    static const auto trylock = behind<gboolean(GMutex *)>("g_mutex_trylock");
    const gboolean locked = trylock(mutex);
    if (locked)
        __tsan_acquire(mutex);
    return locked;
}

void g_mutex_unlock(GMutex *mutex)
{
    static const auto unlock = behind<void(GMutex *)>("g_mutex_unlock");
    __tsan_release(mutex);
    unlock(mutex);
}

void g_cond_wait(GCond *cond, GMutex *mutex)
{
    static const auto wait = behind<void(GCond *, GMutex *)>("g_cond_wait");
    __tsan_release(mutex);
    wait(cond, mutex);
    __tsan_acquire(mutex);
}

gboolean g_cond_wait_until(GCond *cond, GMutex *mutex, gint64 until)
{
    static const auto wait = behind<gboolean(GCond *, GMutex *, gint64)>("g_cond_wait_until");
    __tsan_release(mutex);
    const gboolean woken = wait(cond, mutex, until);
    __tsan_acquire(mutex);
    return woken;
}

// QProcess starts its child in the memory of the parent, which is suspended until the child calls exec. The sanitizer
// would mistake that for a fork and ignore the parent from then on.
int clone(int (*run)(void *), void *stack, int flags, void *argument, ...) noexcept
{
    va_list more;
    va_start(more, argument);
    auto *const parentId = va_arg(more, pid_t *);
    auto *const storage = va_arg(more, void *);
    auto *const childId = va_arg(more, pid_t *);
    va_end(more);
    static const auto sanitized = behind<decltype(clone)>("clone");
    const bool isShared = flags & CLONE_VM;
    return (isShared ? &__clone : sanitized)(run, stack, flags, argument, parentId, storage, childId);
}
