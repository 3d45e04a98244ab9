// The two programs under test, started the way a user starts them, and what the tests ask of them.
#pragma once

#include <Tests/Support/ChildProcess.h>
#include <Tests/Support/Files.h>
#include <Tests/Support/TemporaryDirectory.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace endtoend {

using test_support::ChildProcess;
using test_support::patience;
using test_support::readFile;
using test_support::Result;
using test_support::run;
using test_support::TemporaryDirectory;
using test_support::writeFile;

// The word processor's exit statuses.
constexpr int usageError = 2;
constexpr int noHost = 3;
constexpr int brokenReply = 4;
constexpr int brokenDocument = 4;

// Absolute paths of the build and of the examples.
std::string program(const std::string &name);
std::filesystem::path example(const std::string &name);

// The host, ready: its window is open, the plug-in runs. Without arguments it has the example
// library.
class Host {
 public:
  explicit Host(const std::vector<std::string> &options = {},
                const std::filesystem::path &library = example("library.bib"));
  ~Host();
  Host(const Host &) = delete;
  Host &operator=(const Host &) = delete;

  // Sends SIGSTOP, or SIGKILL and waits for its end, and sees to it that no other program of the
  // desktop suffers. Harmless when it has ended.
  void stop();
  void kill();

  bool isReady() const { return ready_; }
  ChildProcess &process() { return process_; }
  std::string output() const { return process_.standardOutput(); }

 private:
  ChildProcess process_;
  bool ready_;
};

// A draft that was scanned into a copy.
struct Scan {
  Result result;
  std::string original;  // the draft's bytes
  std::string copy;      // the copy's bytes; empty if there is none
  // Everything up to the heading of the references, cut at the citations: what stands in the copy
  // in place of each citation, by the citation's text. Empty if anything between them has changed.
  std::map<std::string, std::string> formattedRTF;
  // The copy from the end of that heading on.
  std::string bibliographyRTF;

  // The text in place of a citation, given with its braces; "(no such citation)" for want of one.
  std::string formatted(const std::string &citation) const;
  std::string bibliography() const;
};

// Has the word processor scan an example draft, with the command (scan, live) and options given.
Scan scan(const std::string &draft, const std::vector<std::string> &options,
          const std::string &command = "scan");

// The same with a draft from elsewhere.
Scan scanFile(const std::filesystem::path &draft, const std::vector<std::string> &options,
              const std::string &command = "scan");

}  // namespace endtoend
