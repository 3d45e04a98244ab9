#include "RawSender.h"

#include <cstdint>
#include <string>
#include <thread>
#include <utility>

using namespace platform_test;

namespace {

using BusContract = RawSender;

TEST_F(BusContract, SmallDataIsAnsweredAsBytes) {
  const Message message = newSend(echoEvent);
  ASSERT_GE(sd_bus_message_append(message.get(), "a(uuv)", 1, keyDirectObject, code("BUFF"), "ay",
                                  3, 0x00, 0x80, 0xFF),
            0);
  const Answer answer = call(message);
  ASSERT_EQ(answer.error, "");
  EXPECT_STREQ(sd_bus_message_get_signature(answer.message.get(), 1), "a(uuv)");
  std::uint32_t keyword = 0;
  std::uint32_t type = 0;
  const void *bytes = nullptr;
  std::size_t size = 0;
  sd_bus_message *reply = answer.message.get();
  ASSERT_GT(sd_bus_message_enter_container(reply, 'a', "(uuv)"), 0);
  ASSERT_GT(sd_bus_message_enter_container(reply, 'r', "uuv"), 0);
  ASSERT_GE(sd_bus_message_read(reply, "uu", &keyword, &type), 0);
  ASSERT_GT(sd_bus_message_enter_container(reply, 'v', "ay"), 0);
  ASSERT_GE(sd_bus_message_read_array(reply, 'y', &bytes, &size), 0);
  EXPECT_EQ(keyword, 0x2D2D2D2Du);
  EXPECT_EQ(type, code("BUFF"));
  EXPECT_EQ(std::string(static_cast<const char *>(bytes), size), std::string("\0\x80\xFF", 3));
}

TEST_F(BusContract, SmallFileIsTakenAndAnsweredAsBytesOrFile) {
  const int file = memoryFile(5, allSeals);
  const Answer answer = echoFile(file);
  close(file);
  EXPECT_EQ(answer.error, "");
}

TEST_F(BusContract, DataAboveAMebibyteIsAnsweredAsASealedMemoryFile) {
  constexpr std::size_t size = 1'048'577;
  const Message message = newSend(echoEvent);
  const std::string payload(size, 'p');
  sd_bus_message *request = message.get();
  ASSERT_GE(sd_bus_message_open_container(request, 'a', "(uuv)"), 0);
  ASSERT_GE(sd_bus_message_open_container(request, 'r', "uuv"), 0);
  ASSERT_GE(sd_bus_message_append(request, "uu", keyDirectObject, typeChar), 0);
  ASSERT_GE(sd_bus_message_open_container(request, 'v', "ay"), 0);
  ASSERT_GE(sd_bus_message_append_array(request, 'y', payload.data(), size), 0);
  ASSERT_GE(sd_bus_message_close_container(request), 0);
  ASSERT_GE(sd_bus_message_close_container(request), 0);
  ASSERT_GE(sd_bus_message_close_container(request), 0);
  const Answer answer = call(message);
  ASSERT_EQ(answer.error, "");
  sd_bus_message *reply = answer.message.get();
  std::uint32_t keyword = 0;
  std::uint32_t type = 0;
  int file = -1;
  ASSERT_GE(sd_bus_message_read(reply, "a(uuv)", 1, &keyword, &type, "h", &file), 0);
  EXPECT_EQ(fcntl(file, F_GET_SEALS) & allSeals, allSeals);
  std::string contents(size + 1, '\0');
  EXPECT_EQ(pread(file, contents.data(), contents.size(), 0), static_cast<ssize_t>(size));
  EXPECT_TRUE(contents.starts_with(payload));
}

TEST_F(BusContract, FileThatLacksASealIsRefused) {
  for (const int missing : {F_SEAL_SHRINK, F_SEAL_GROW, F_SEAL_WRITE, F_SEAL_SEAL}) {
    const int file = memoryFile(2'000'000, allSeals & ~missing);
    EXPECT_EQ(echoFile(file).error, errorPrefix + std::string("1702")) << missing;
    close(file);
  }
  expectPeerAlive();
}

TEST_F(BusContract, DescriptorThatIsNoMemoryFileIsRefused) {
  const int device = open("/dev/zero", O_RDONLY | O_CLOEXEC);
  EXPECT_EQ(echoFile(device).error, errorPrefix + std::string("1702"));
  close(device);
  expectPeerAlive();
}

TEST_F(BusContract, FileLargerThanTheInboxIsRefusedWithoutBeingRead) {
  const int file = memoryFile(std::size_t{1} << 33, allSeals);
  EXPECT_EQ(echoFile(file).error, errorPrefix + std::string("108"));
  close(file);
  expectPeerAlive();
}

TEST_F(BusContract, DataThatIsNeitherBytesNorAFileIsRefused) {
  const Message text = newSend(echoEvent);
  ASSERT_GE(sd_bus_message_append(text.get(), "a(uuv)", 1, keyDirectObject, typeChar, "s", "text"),
            0);
  EXPECT_EQ(call(text).error, errorPrefix + std::string("1703"));
  const Message nested = newSend(echoEvent);
  ASSERT_GE(sd_bus_message_append(nested.get(), "a(uuv)", 1, keyDirectObject, typeChar, "v", "ay",
                                  1, 0x01),
            0);
  EXPECT_EQ(call(nested).error, errorPrefix + std::string("1703"));
  const Message number = newSend(echoEvent);
  ASSERT_GE(sd_bus_message_append(number.get(), "a(uuv)", 2, keyDirectObject, typeChar, "ay", 0,
                                  code("more"), typeChar, "u", 5),
            0);
  EXPECT_EQ(call(number).error, errorPrefix + std::string("1703"));
  expectPeerAlive();
}

TEST_F(BusContract, OtherArgumentsAreRefused) {
  sd_bus_message *message = nullptr;
  ASSERT_GE(sd_bus_message_new_method_call(client_.get(), &message, peerName, objectPath,
                                           interfaceName, "Send"),
            0);
  ASSERT_GE(sd_bus_message_append(message, "ss", "TEST", "echo"), 0);
  EXPECT_EQ(call(adoptMessage(message)).error, "org.freedesktop.DBus.Error.InvalidArgs");
  expectPeerAlive();
}

TEST_F(BusContract, EventWithoutParametersIsTaken) {
  const Message message = newSend(echoEvent);
  ASSERT_GE(sd_bus_message_append(message.get(), "a(uuv)", 0), 0);
  const Answer answer = call(message);
  EXPECT_EQ(answer.error, "");
  EXPECT_STREQ(sd_bus_message_get_signature(answer.message.get(), 1), "a(uuv)");
}

TEST_F(BusContract, AHundredThousandParametersAreTaken) {
  const Message message = newSend(noteEvent);
  sd_bus_message *request = message.get();
  ASSERT_GE(sd_bus_message_open_container(request, 'a', "(uuv)"), 0);
  for (std::uint32_t number = 0; number < 100'000; ++number) {
    ASSERT_GE(sd_bus_message_append(request, "(uuv)", number, typeChar, "ay", 1, 0x41), 0);
  }
  ASSERT_GE(sd_bus_message_append(request, "(uuv)", keyDirectObject, typeChar, "ay", 1, 0x42), 0);
  ASSERT_GE(sd_bus_message_close_container(request), 0);
  EXPECT_EQ(call(message).error, "");
  EXPECT_EQ(peerNotes(), "B with reply\n");
}

TEST_F(BusContract, OneKeywordTwiceCountsAsItsFirst) {
  const Message message = newSend(noteEvent);
  ASSERT_GE(sd_bus_message_append(message.get(), "a(uuv)", 2, keyDirectObject, typeChar, "ay", 1,
                                  0x41, keyDirectObject, typeChar, "ay", 1, 0x42),
            0);
  EXPECT_EQ(call(message).error, "");
  EXPECT_EQ(peerNotes(), "A with reply\n");
}

TEST_F(BusContract, AnswersThatAreNoneAreFailures) {
  // A process with a name of ours that answers with something else.
  ASSERT_GE(sd_bus_request_name(client_.get(), "org.korvo.AppleEvents.S52617720", 0), 0);
  sd_bus_slot *slot = nullptr;
  ASSERT_GE(sd_bus_add_filter(
                client_.get(), &slot,
                [](sd_bus_message *message, void *, sd_bus_error *) {
                  return sd_bus_message_is_method_call(message, interfaceName, "Send") > 0
                             ? sd_bus_reply_method_return(message, "s", "odd")
                             : 0;
                },
                nullptr),
            0);
  const platform::Slot filter(slot);
  std::thread answering([this] {
    for (int round = 0; round < 100; ++round) {
      while (sd_bus_process(client_.get(), nullptr) > 0) {
      }
      sd_bus_wait(client_.get(), 20'000);
    }
  });
  EXPECT_EQ(sendAndWait(code("Raw "), echoEvent, "").status, errAECorruptData);
  answering.join();
}

TEST_F(BusContract, StatusesAreErrorNames) {
  for (const auto &[eventID, number] :
       {std::pair{code("none"), "1708"}, std::pair{raiseEvent, "10000"}}) {
    const Message message = newSend(eventID);
    ASSERT_GE(sd_bus_message_append(message.get(), "a(uuv)", 0), 0);
    BusError error;
    sd_bus_message *reply = nullptr;
    EXPECT_LT(sd_bus_call(client_.get(), message.get(), 20'000'000, error.out(), &reply), 0);
    EXPECT_EQ(error.get().name, errorPrefix + std::string(number));
    EXPECT_STRNE(error.get().message, "");
  }
}

TEST_F(BusContract, ActivateHasNeitherArgumentsNorResult) {
  BusError error;
  sd_bus_message *reply = nullptr;
  ASSERT_GE(sd_bus_call_method(client_.get(), peerName, objectPath, interfaceName, "Activate",
                               error.out(), &reply, ""),
            0)
      << error.get().message;
  EXPECT_STREQ(sd_bus_message_get_signature(adoptMessage(reply).get(), 1), "");
  EXPECT_EQ(peerNotes(), "activated\n");
}

TEST_F(BusContract, IntrospectionNamesEverything) {
  BusError error;
  sd_bus_message *reply = nullptr;
  ASSERT_GE(
      sd_bus_call_method(client_.get(), peerName, objectPath, "org.freedesktop.DBus.Introspectable",
                         "Introspect", error.out(), &reply, ""),
      0);
  const Message answer = adoptMessage(reply);
  const char *text = nullptr;
  ASSERT_GT(sd_bus_message_read(reply, "s", &text), 0);
  const std::string description = text;
  for (const char *line : {"<interface name=\"org.korvo.AppleEvents1\">",
                           "<arg type=\"u\" name=\"eventClass\" direction=\"in\"/>",
                           "<arg type=\"u\" name=\"eventID\" direction=\"in\"/>",
                           "<arg type=\"a(uuv)\" name=\"parameters\" direction=\"in\"/>",
                           "<arg type=\"a(uuv)\" name=\"replyParameters\" direction=\"out\"/>",
                           "<method name=\"Activate\">"}) {
    EXPECT_NE(description.find(line), std::string::npos) << line;
  }
}

TEST_F(BusContract, EventSentWithoutReplyHasTheFlagThatSaysSo) {
  ASSERT_GE(sd_bus_request_name(client_.get(), "org.korvo.AppleEvents.S52617720", 0), 0);
  Message seen;
  sd_bus_slot *slot = nullptr;
  ASSERT_GE(sd_bus_add_filter(
                client_.get(), &slot,
                [](sd_bus_message *message, void *found, sd_bus_error *) {
                  if (sd_bus_message_is_method_call(message, interfaceName, "Send") > 0) {
                    *static_cast<Message *>(found) = platform::shareMessage(message);
                    return 1;
                  }
                  return 0;
                },
                &seen),
            0);
  const platform::Slot filter(slot);
  ASSERT_EQ(sendOneWay(code("Raw "), noteEvent, "raw"), noErr);
  for (int round = 0; round < 200 && seen == nullptr; ++round) {
    while (sd_bus_process(client_.get(), nullptr) > 0) {
    }
    sd_bus_wait(client_.get(), 20'000);
  }
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(sd_bus_message_get_expect_reply(seen.get()), 0);
  EXPECT_STREQ(sd_bus_message_get_signature(seen.get(), 1), "uua(uuv)");
  EXPECT_STREQ(sd_bus_message_get_path(seen.get()), objectPath);
}

}  // namespace
