/**
 * @file interruption.h
 * What a signal that ends the program must not leave behind: files under temporary names.
 */
#ifndef QSTD_INTERRUPTION_H
#define QSTD_INTERRUPTION_H

#include <csignal>

namespace qstd {

/** Holds back the signals that end the program for as long as it lives: what is done meanwhile is done whole. */
class SignalsHeld
{
public:
    SignalsHeld();
    ~SignalsHeld();

    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    SignalsHeld(SignalsHeld&&) = delete;
    SignalsHeld& operator=(SignalsHeld&&) = delete;

private:
    sigset_t before = {};
};

/**
 * A file that is removed when a signal ends the program.
 *
 * The program still ends by that signal, so that its exit status tells it. Signals that it was started to ignore stay
 * ignored.
 */
class RemovedOnInterruption
{
public:
    RemovedOnInterruption() = default;
    ~RemovedOnInterruption();

    RemovedOnInterruption(const RemovedOnInterruption&) = delete;
    RemovedOnInterruption& operator=(const RemovedOnInterruption&) = delete;
    RemovedOnInterruption(RemovedOnInterruption&&) = delete;
    RemovedOnInterruption& operator=(RemovedOnInterruption&&) = delete;

    /** @param filePath  not copied: must stay valid and the same until Release or the end */
    void Watch(const char* filePath);

    /** The file may stay. */
    void Release();

private:
    static void InstallHandlers();
    static void RemoveAll(int signal);

    const char* path = nullptr;
    RemovedOnInterruption* next = nullptr;
};

} // namespace qstd

#endif
