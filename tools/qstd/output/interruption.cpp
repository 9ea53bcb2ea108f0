#include "output/interruption.h"

#include <unistd.h>

#include <array>
#include <atomic>

namespace qstd {

namespace {

/** Those that end a program from outside; SIGPIPE is the reader of its output gone. */
constexpr std::array<int, 7> ENDING_SIGNALS = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGXCPU, SIGXFSZ};

sigset_t EndingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : ENDING_SIGNALS)
    {
        sigaddset(&signals, signal);
    }
    return signals;
}

/** The files to remove, as a list through their objects; changed only while the signals are held. */
std::atomic<RemovedOnInterruption*> firstWatched = nullptr;
static_assert(std::atomic<RemovedOnInterruption*>::is_always_lock_free, "a signal handler reads it");

} // namespace

SignalsHeld::SignalsHeld()
{
    const sigset_t signals = EndingSignals();
    sigprocmask(SIG_BLOCK, &signals, &before);
}

SignalsHeld::~SignalsHeld()
{
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

RemovedOnInterruption::~RemovedOnInterruption()
{
    Release();
}

void RemovedOnInterruption::Watch(const char* filePath)
{
    Release();
    const SignalsHeld held;
    InstallHandlers();
    path = filePath;
    next = firstWatched;
    firstWatched = this;
}

void RemovedOnInterruption::Release()
{
    if (path == nullptr)
    {
        return;
    }
    const SignalsHeld held;
    if (firstWatched == this)
    {
        firstWatched = next;
    }
    for (RemovedOnInterruption* other = firstWatched; other != nullptr; other = other->next)
    {
        if (other->next == this)
        {
            other->next = next;
        }
    }
    path = nullptr;
}

/** Once, for signals that nobody else has decided about. */
void RemovedOnInterruption::InstallHandlers()
{
    static bool areInstalled = false;
    if (areInstalled)
    {
        return;
    }
    areInstalled = true;
    struct sigaction action = {};
    action.sa_handler = RemoveAll;
    action.sa_mask = EndingSignals();
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : ENDING_SIGNALS)
    {
        struct sigaction present = {};
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_DFL)
        {
            sigaction(signal, &action, nullptr);
        }
    }
}

/** Calls only what a signal handler may call. The action is the default again, so raising it ends the program. */
void RemovedOnInterruption::RemoveAll(int signal)
{
    for (const RemovedOnInterruption* file = firstWatched; file != nullptr; file = file->next)
    {
        unlink(file->path);
    }
    raise(signal);
}

} // namespace qstd
