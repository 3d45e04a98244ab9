// A sender that does not wait: LoadFlood SENDER COUNT BYTES sends COUNT live bibliography requests
// of exactly BYTES bytes at once, over the bare bus. It tells the word processor when all of them
// have reached the host, and again when each is answered: with its own answer, or with a status.
#include "LoadEvents.h"
#include "LoadNumbers.h"

#include <Formats/ScanReply.h>
#include <Formats/ScanRequest.h>
#include <Platform/Bus/BusHandles.h>
#include <Tests/Support/EventSending.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace load_test;
using platform::adoptMessage;
using platform::Connection;
using platform::Message;
using platform::Slot;
using test_support::sendOneWay;

namespace {

constexpr char hostName[] = "org.korvo.AppleEvents.S4B52564F";
constexpr char path[] = "/org/korvo/AppleEvents";
constexpr char interface[] = "org.korvo.AppleEvents1";
constexpr char noMemory[] = "org.korvo.AppleEvents1.Error.S108";
constexpr std::uint64_t patience = 600'000'000;

[[noreturn]] void giveUp(const char *what) {
  std::fprintf(stderr, "LoadFlood: %s\n", what);
  std::exit(1);
}

// The citation and, in the part that the host drops, as much as makes the request `bytes` long.
std::string request(const std::string &text, std::size_t bytes) {
  const formats::CitationPair citation{text, ""};
  const std::size_t unpadded =
      formats::encodeLiveBibliographyRequest(0, false, styleName, {&citation, 1}).size();
  const std::string padding(bytes - std::min(bytes, unpadded), 'x');
  const formats::CitationPair padded{text, padding};
  return formats::encodeLiveBibliographyRequest(0, false, styleName, {&padded, 1});
}

struct Flood {
  std::uint32_t answered = 0;
  std::uint32_t refused = 0;
  std::uint32_t wrong = 0;
};

struct Awaited {
  Flood *flood = nullptr;
  std::string expected;
  Slot slot;
};

bool isOwnAnswer(sd_bus_message *message, const std::string &expected) {
  std::uint32_t keyword = 0;
  std::uint32_t type = 0;
  const void *bytes = nullptr;
  std::size_t size = 0;
  if (sd_bus_message_enter_container(message, 'a', "(uuv)") <= 0 ||
      sd_bus_message_enter_container(message, 'r', "uuv") <= 0 ||
      sd_bus_message_read(message, "uu", &keyword, &type) <= 0 ||
      sd_bus_message_enter_container(message, 'v', "ay") <= 0 ||
      sd_bus_message_read_array(message, 'y', &bytes, &size) <= 0) {
    return false;
  }
  const auto reply = formats::decodeScanReply({static_cast<const char *>(bytes), size});
  return reply && reply->groups.size() == 1 && reply->groups.front() == "(" + expected + ")";
}

int replied(sd_bus_message *message, void *context, sd_bus_error *) {
  const Awaited &awaited = *static_cast<Awaited *>(context);
  if (sd_bus_message_is_method_error(message, noMemory) > 0) {
    ++awaited.flood->refused;
  } else if (isOwnAnswer(message, awaited.expected)) {
    ++awaited.flood->answered;
  } else {
    ++awaited.flood->wrong;
  }
  return 1;
}

void send(sd_bus *bus, Awaited &awaited, std::size_t bytes) {
  const std::string payload = request(awaited.expected, bytes);
  sd_bus_message *made = nullptr;
  if (sd_bus_message_new_method_call(bus, &made, hostName, path, interface, "Send") < 0) {
    giveUp("no message");
  }
  const Message message = adoptMessage(made);
  sd_bus_slot *slot = nullptr;
  if (sd_bus_message_append(made, "uu", formats::mellelSignature,
                            formats::request::liveBibliography) < 0 ||
      sd_bus_message_open_container(made, 'a', "(uuv)") < 0 ||
      sd_bus_message_open_container(made, 'r', "uuv") < 0 ||
      sd_bus_message_append(made, "uu", formats::directObjectKeyword, formats::textDescriptorType) <
          0 ||
      sd_bus_message_open_container(made, 'v', "ay") < 0 ||
      sd_bus_message_append_array(made, 'y', payload.data(), payload.size()) < 0 ||
      sd_bus_message_close_container(made) < 0 || sd_bus_message_close_container(made) < 0 ||
      sd_bus_message_close_container(made) < 0 ||
      sd_bus_call_async(bus, &slot, made, replied, &awaited, patience) < 0) {
    giveUp("a request could not be sent");
  }
  awaited.slot.reset(slot);
}

void turn(sd_bus *bus) {
  int result = sd_bus_process(bus, nullptr);
  if (result == 0) {
    result = sd_bus_wait(bus, patience);
  }
  if (result < 0) {
    giveUp("the bus is gone");
  }
}

void tell(const std::string &what) {
  if (sendOneWay(formats::mellelSignature, loadClass, doneEvent, what) != noErr) {
    giveUp("nobody to tell");
  }
}

}  // namespace

int main(int count, char **arguments) {
  if (count != 4) {
    std::fputs("usage: LoadFlood SENDER COUNT BYTES\n", stderr);
    return 2;
  }
  const auto sender = static_cast<std::uint32_t>(std::strtoul(arguments[1], nullptr, 10));
  const auto amount = static_cast<std::uint32_t>(std::strtoul(arguments[2], nullptr, 10));
  const std::size_t bytes = std::strtoul(arguments[3], nullptr, 10);
  sd_bus *opened = nullptr;
  if (sd_bus_open_user(&opened) < 0) {
    giveUp("no bus");
  }
  const Connection bus(opened);
  Flood flood;
  std::vector<Awaited> awaited(amount);
  for (std::uint32_t index = 0; index < amount; ++index) {
    awaited[index].flood = &flood;
    awaited[index].expected = citationText(Asked::echo, numberOf(sender, index));
    send(opened, awaited[index], bytes);
  }
  std::uint64_t unsent = 0;
  while (sd_bus_get_n_queued_write(opened, &unsent) >= 0 && unsent > 0) {
    turn(opened);
  }
  // Answered by the host's bus library at once, behind everything that was sent before.
  if (sd_bus_call_method(opened, hostName, path, "org.freedesktop.DBus.Peer", "Ping", nullptr,
                         nullptr, nullptr) < 0) {
    giveUp("the host does not take what is sent");
  }
  tell("sent");
  while (flood.answered + flood.refused + flood.wrong < amount) {
    turn(opened);
  }
  tell(std::to_string(sender) + " " + std::to_string(flood.answered) + " " +
       std::to_string(flood.refused));
  return flood.wrong == 0 ? 0 : 1;
}
