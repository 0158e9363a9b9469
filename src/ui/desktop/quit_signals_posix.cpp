#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "quit_signals.h"

namespace quillmate::ui {
namespace {

/// A handler may do no more than write a byte; the program hears of it when it waits for events.
int channel[2] = {-1, -1};

void Ask(int /*signal*/) {
  const char byte = 0;
  static_cast<void>(!write(channel[1], &byte, 1));
}

}  // namespace

void QuitWithSignals() {
  std::signal(SIGXFSZ, SIG_IGN);
  if (pipe2(channel, O_CLOEXEC | O_NONBLOCK) != 0) return;
  auto* const notifier = new QSocketNotifier(channel[0], QSocketNotifier::Read, QCoreApplication::instance());
  QObject::connect(notifier, &QSocketNotifier::activated, notifier, [] {
    char asked = 0;
    while (read(channel[0], &asked, 1) > 0) continue;
    // Nobody may be there to answer a question: open messages end with it, and none comes any more.
    QCoreApplication::exit();
  });
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction action {};
    if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) continue;
    action.sa_handler = Ask;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace quillmate::ui
