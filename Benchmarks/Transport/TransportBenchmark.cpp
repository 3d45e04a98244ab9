// How quickly bytes get from one process to another by Apple Events, beside a bare call over the
// same bus and beside a pipe.
//
// Each exchange is the same everywhere: the sender has the bytes in its memory, the receiver looks
// at all of them and answers with a number. The ways take turns, exchange by exchange, so that what
// else the machine does hits all of them alike, and the median of each way counts. They take them
// in an order that is drawn anew each time: what a megabyte takes depends by a quarter on what was
// sent before it.
//
// Where a message is small enough to travel in one piece, waking the receiver is most of what it
// takes, and twice as much where that sleeps on another processor. Which it does is the system's
// whim, and stays so for a whole run: two copies of one and the same way differed by 67 µs to 38.
// So up to the size that travels inside the message all processes share one processor. Large data
// may be written by one while another reads, wherever the system wants.
#include "Partner.h"
#include "Report.h"
#include "Way.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace benchmarks {

void giveUp(const char *what) {
  std::fprintf(stderr, "TransportBenchmark: %s\n", what);
  std::exit(1);
}

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kibibyte = 1024;
constexpr std::size_t mebibyte = 1024 * kibibyte;
// Up to what one event may carry at most, and on with the ways that carry more.
constexpr std::size_t sizes[] = {
    16,           kibibyte,      16 * kibibyte, 128 * kibibyte, mebibyte,       2 * mebibyte,
    4 * mebibyte, 16 * mebibyte, 64 * mebibyte, 255 * mebibyte, 1024 * mebibyte};
constexpr std::size_t largestQuickly = 4 * mebibyte;
constexpr std::size_t largestInline = mebibyte;

constexpr double mostBesideCall = 1.3;
constexpr double leastBesidePipe = 0.5;

struct NamedWay {
  std::string name;
  std::unique_ptr<Way> way;
  // Microseconds, of one size.
  std::vector<double> times;
};

std::size_t roundsFor(std::size_t size, bool quickly) {
  const std::size_t most = quickly ? 15 : 2001;
  return std::clamp<std::size_t>(1024 * mebibyte / std::max(size, kibibyte), 7, most);
}

double timedExchange(Way &way, std::span<const std::byte> payload, std::uint64_t expected) {
  const auto start = Clock::now();
  const std::uint64_t sum = way.exchange(payload);
  const std::chrono::duration<double, std::micro> time = Clock::now() - start;
  if (sum != expected) {
    giveUp("Not all bytes arrived as they were sent");
  }
  return time.count();
}

void measure(std::span<NamedWay> ways, std::span<std::byte> payload, std::size_t rounds) {
  for (NamedWay &way : ways) {
    way.times.clear();
  }
  std::vector<NamedWay *> order;
  for (NamedWay &way : ways) {
    if (way.way->carries(payload.size())) {
      order.push_back(&way);
    }
  }
  std::minstd_rand random(1);
  // The first round warms up.
  for (std::size_t round = 0; round <= rounds; ++round) {
    const std::uint64_t number = payload.size() + round;
    std::memcpy(payload.data(), &number, sizeof number);
    const std::uint64_t expected = sumOfWords(payload);
    std::ranges::shuffle(order, random);
    for (NamedWay *way : order) {
      const double time = timedExchange(*way->way, payload, expected);
      if (round > 0) {
        way->times.push_back(time);
      }
    }
  }
}

Row rowOf(const NamedWay &way, std::size_t size) {
  return {.plot = "Round trip of an event",
          .name = way.name,
          .size = static_cast<double>(size),
          .sizeUnit = "bytes",
          .sample = sampleOf(way.times),
          .unit = "µs"};
}

Row rateOf(const NamedWay &way, std::size_t size) {
  std::vector<double> rates = way.times;
  // Bytes in a microsecond are megabytes in a second.
  std::ranges::transform(rates, rates.begin(),
                         [size](double time) { return static_cast<double>(size) / time; });
  Row row = rowOf(way, size);
  row.plot = "Rate of large events";
  row.sample = sampleOf(rates);
  row.unit = "MB/s";
  return row;
}

void report(Report &report, std::span<const NamedWay> ways, std::size_t size) {
  for (const NamedWay &way : ways) {
    if (way.times.empty()) {
      continue;
    }
    Row row = rowOf(way, size);
    if (&way == &ways.front()) {
      // The bare call that carries the bytes in the same manner.
      row.beside = size <= largestInline ? "bare call, bytes" : "bare call, memory file";
      row.aim = mostBesideCall;
    }
    report.add(row);
    if (size > largestInline) {
      Row rate = rateOf(way, size);
      if (&way == &ways.front()) {
        rate.beside = "pipe";
        rate.aim = leastBesidePipe;
        rate.aimIs = AimIs::least;
      }
      report.add(rate);
    }
  }
}

}  // namespace
}  // namespace benchmarks

int main(int count, char **arguments) {
  using namespace benchmarks;
  const Options options = takeOptions(count, arguments);
  if (count != 1) {
    std::fputs("usage: TransportBenchmark [--json] [--quick]\n", stderr);
    return 2;
  }
  std::vector<NamedWay> ways;
  ways.push_back({"event", makeAppleEventsWay(), {}});
  ways.push_back({"bare call, bytes", makeBusBytesWay(), {}});
  ways.push_back({"bare call, memory file", makeBusFileWay(), {}});
  ways.push_back({"pipe", makePipeWay(), {}});

  const std::size_t largest = options.quick ? largestQuickly : *std::rbegin(sizes);
  std::vector<std::byte> memory(largest);
  for (std::size_t index = 0; index < memory.size(); ++index) {
    memory[index] = static_cast<std::byte>(index * 31 >> 3);
  }
  Report found("transport", "Transport");
  for (const std::size_t size : sizes) {
    if (size <= largest) {
      std::optional<OneProcessor> together;
      if (size <= largestInline) {
        together.emplace();
      }
      measure(ways, std::span(memory).first(size), roundsFor(size, options.quick));
      report(found, ways, size);
    }
  }
  options.asJSON ? found.printJSON() : found.printTable();
}
