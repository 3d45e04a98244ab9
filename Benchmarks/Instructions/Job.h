// Pieces of work whose instructions are counted: too small or too noisy to time, and the same on
// every machine when they are counted.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace benchmarks {

struct Job {
  // In words; the recorded counts are kept under it.
  std::string name;
  // Makes what the work needs, and returns the work, which may be done several times.
  std::function<std::function<void()>()> prepare;
};

// Each ends the program with a line on standard error where its work does not give what it should:
// what fails early takes few instructions.
std::vector<Job> formatsJobs();
std::vector<Job> documentJobs();
std::vector<Job> libraryJobs();
std::vector<Job> eventJobs();
std::vector<Job> agentJobs();

// For results that are right when this holds.
void require(bool condition, const char *what);

}  // namespace benchmarks
