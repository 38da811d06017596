// SPDX-License-Identifier: MIT
#include "platform/linux/signal_source.h"

#include <signal.h>
#include <sys/signalfd.h>

namespace vantrell {

namespace {

bool isIgnored(int signal) {
    struct sigaction present {};
    return ::sigaction(signal, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

}  // namespace

SignalSource::SignalSource() {
    for (const int signal : {SIGPIPE, SIGXFSZ, SIGIO}) ::signal(signal, SIG_IGN);
    sigset_t listened;
    ::sigemptyset(&listened);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        if (!isIgnored(signal)) ::sigaddset(&listened, signal);
    if (::sigisemptyset(&listened) != 0) return;
    requests_ = LinuxFd(::signalfd(-1, &listened, SFD_CLOEXEC | SFD_NONBLOCK));
    // Without the descriptor they keep their usual effect, which is to end the program.
    if (requests_ && ::pthread_sigmask(SIG_BLOCK, &listened, nullptr) != 0) requests_.reset();
}

void SignalSource::serve() {
    bool taken = false;
    signalfd_siginfo request{};
    while (::read(requests_.get(), &request, sizeof request) == sizeof request) taken = true;
    if (taken && asked_) asked_();
}

}  // namespace vantrell
