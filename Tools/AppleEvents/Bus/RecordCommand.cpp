#include "RecordCommand.h"

#include "BusMonitor.h"
#include "RecordingFile.h"
#include "StartedCommand.h"

#include <StandIns/Terminal/Output.h>

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <memory>

namespace appleevents {

namespace {

using terminal::TerminalText;

// The signals that end a recording, and the one that tells of the command's end, as a descriptor:
// they wait for their turn like everything else.
class SignalDescriptor {
 public:
  SignalDescriptor() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) {
      sigaddset(&signals, signal);
    }
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  }
  ~SignalDescriptor() { close(descriptor_); }
  SignalDescriptor(const SignalDescriptor &) = delete;
  SignalDescriptor &operator=(const SignalDescriptor &) = delete;
  SignalDescriptor(SignalDescriptor &&) = delete;
  SignalDescriptor &operator=(SignalDescriptor &&) = delete;

  int number() const { return descriptor_; }
  // Whether one came that asks for the end.
  bool asksForEnd() const {
    signalfd_siginfo signal{};
    bool isAsked = false;
    while (read(descriptor_, &signal, sizeof signal) == sizeof signal) {
      isAsked = isAsked || signal.ssi_signo != SIGCHLD;
    }
    return isAsked;
  }

 private:
  int descriptor_ = -1;
};

class Recorder {
 public:
  Recorder(BusMonitor &monitor, RecordingFile &file) : monitor_(monitor), file_(file) {}

  // Until the command ends, if there is one, or a signal comes. False when the bus has gone.
  bool run(const SignalDescriptor &signals, StartedCommand *command) {
    while (file_.error().empty()) {
      if (!wait(signals.number()) || !takeIn()) {
        return false;
      }
      if (signals.asksForEnd()) {
        return true;
      }
      if (command != nullptr && command->status()) {
        return takeInStragglers();
      }
    }
    return true;
  }

  // What was sent before this is still on its way.
  bool takeInTheRest() {
    if (!monitor_.askForEnd()) {
      return false;
    }
    while (takeIn()) {
      if (monitor_.hasSeenEnd()) {
        return true;
      }
      if (!wait(-1)) {
        return false;
      }
    }
    return false;
  }

 private:
  bool takeIn() {
    return monitor_.process([this](RecordedMessage message) { file_.add(std::move(message)); },
                            complain);
  }

  // A host goes on for a moment after the last answer that the command waited for.
  bool takeInStragglers() {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds timeForStragglers{300};
    const Clock::time_point end = Clock::now() + timeForStragglers;
    for (Clock::time_point now = Clock::now(); now < end; now = Clock::now()) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - now);
      if (!wait(-1, static_cast<int>(left.count())) || !takeIn()) {
        return false;
      }
    }
    return true;
  }

  bool wait(int signals, int milliseconds = -1) const {
    pollfd descriptors[] = {{.fd = monitor_.descriptor(), .events = POLLIN, .revents = 0},
                            {.fd = signals, .events = POLLIN, .revents = 0}};
    return poll(descriptors, std::size(descriptors), milliseconds) >= 0 || errno == EINTR;
  }

  BusMonitor &monitor_;
  RecordingFile &file_;
};

}  // namespace

std::expected<Status, Failure> runRecord(const RecordOptions &options) {
  const SignalDescriptor signals;
  auto monitor = BusMonitor::open();
  if (!monitor) {
    return std::unexpected(Failure{Status::unreachable, monitor.error()});
  }
  auto file = RecordingFile::create(options.output, options.isAnonymous, options.hasTimes);
  if (!file) {
    return std::unexpected(Failure{Status::brokenInput, file.error()});
  }
  std::unique_ptr<StartedCommand> command;
  if (options.command) {
    auto started = StartedCommand::start(*options.command, StartedCommand::Output::shown);
    if (!started) {
      return std::unexpected(Failure{Status::wrongUsage, started.error()});
    }
    command = *std::move(started);
  } else {
    terminal::print(terminal::Words("recording until interrupted\n"));
  }
  Recorder recorder(**monitor, **file);
  const bool isWhole =
      recorder.run(signals, command.get()) && (*file)->error().empty() && recorder.takeInTheRest();
  (*file)->finish();
  if (!(*file)->error().empty()) {
    return std::unexpected(Failure{Status::brokenInput, (*file)->error()});
  }
  terminal::print("recorded: " + TerminalText::number((*file)->events()) + " events in " +
                  TerminalText::inOneLine(options.output) + "\n");
  if (!isWhole) {
    return std::unexpected(Failure{Status::unreachable, "the session bus has gone meanwhile"});
  }
  const int status = command == nullptr ? 0 : command->status().value_or(0);
  if (status != 0) {
    complain("the command ended with status " + std::to_string(status));
    return Status::differs;
  }
  return Status::done;
}

}  // namespace appleevents
