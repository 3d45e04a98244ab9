#include "ParameterCodec.h"

#include <Platform/SealedMemoryFile.h>

#include <cerrno>
#include <memory>
#include <utility>

namespace platform {
namespace {

constexpr std::size_t inlineBudget = 48 * largestInlineSize;
constexpr std::size_t arrayLimit = 60 * largestInlineSize;
// Keyword, type, the variant's own signature, a length and padding.
constexpr std::size_t entryOverhead = 32;
constexpr int fileLimit = 16;

constexpr char entrySignature[] = "(uuv)";
constexpr char entryContents[] = "uuv";

class ParameterWriter {
 public:
  explicit ParameterWriter(sd_bus_message *message) : message_(message) {}

  OSStatus append(const Parameter &parameter) {
    bytesInline_ += entryOverhead;
    const SealedMemoryFile *file = parameter.data.memoryFile();
    const bool hasFile = file != nullptr && file->descriptor() >= 0;
    if (hasFile) {
      return appendFile(parameter, *file);
    }
    const std::size_t size = parameter.data.size();
    if (size <= largestInlineSize && bytesInline_ + size <= inlineBudget) {
      return appendBytes(parameter);
    }
    if (size == 0) {
      return bytesInline_ <= arrayLimit ? appendBytes(parameter) : OSStatus{memFullErr};
    }
    const auto made = SealedMemoryFile::create(parameter.data.view());
    return made ? appendFile(parameter, *made) : made.error();
  }

 private:
  OSStatus appendBytes(const Parameter &parameter) {
    const auto bytes = parameter.data.view();
    bytesInline_ += bytes.size();
    return open(parameter, "ay") &&
                   sd_bus_message_append_array(message_, 'y', bytes.data(), bytes.size()) >= 0 &&
                   close()
               ? noErr
               : memFullErr;
  }

  OSStatus appendFile(const Parameter &parameter, const SealedMemoryFile &file) {
    const int descriptor = file.descriptor();
    return ++files_ <= fileLimit && open(parameter, "h") &&
                   sd_bus_message_append_basic(message_, 'h', &descriptor) >= 0 && close()
               ? noErr
               : memFullErr;
  }

  bool open(const Parameter &parameter, const char *contents) {
    return sd_bus_message_open_container(message_, 'r', entryContents) >= 0 &&
           sd_bus_message_append(message_, "uu", parameter.keyword, parameter.type) >= 0 &&
           sd_bus_message_open_container(message_, 'v', contents) >= 0;
  }

  bool close() {
    return sd_bus_message_close_container(message_) >= 0 &&
           sd_bus_message_close_container(message_) >= 0;
  }

  sd_bus_message *message_;
  std::size_t bytesInline_ = 0;
  int files_ = 0;
};

std::expected<SharedBytes, OSStatus> readBytes(const Message &message) {
  const void *bytes = nullptr;
  std::size_t size = 0;
  if (sd_bus_message_read_array(message.get(), 'y', &bytes, &size) < 0) {
    return std::unexpected(OSStatus{errAECorruptData});
  }
  return SharedBytes({static_cast<const std::byte *>(bytes), size}, message);
}

std::expected<SharedBytes, OSStatus> readFile(const Message &message, std::size_t largestSize) {
  int descriptor = -1;
  if (sd_bus_message_read_basic(message.get(), 'h', &descriptor) < 0) {
    return std::unexpected(OSStatus{errAECorruptData});
  }
  auto file = SealedMemoryFile::open(descriptor, largestSize);
  if (!file) {
    return std::unexpected(file.error());
  }
  return SharedBytes(std::make_shared<const SealedMemoryFile>(*std::move(file)));
}

// Enters a parameter's data. Nearly all of them are bytes, so to ask first would be in vain.
std::expected<bool, OSStatus> enterBytesElseFile(sd_bus_message *message) {
  for (const bool isBytes : {true, false}) {
    const int entered = sd_bus_message_enter_container(message, 'v', isBytes ? "ay" : "h");
    if (entered > 0) {
      return isBytes;
    }
    // That the contents are others.
    if (entered != -ENXIO) {
      return std::unexpected(OSStatus{errAECorruptData});
    }
  }
  return std::unexpected(OSStatus{errAEWrongDataType});
}

std::expected<Parameter, OSStatus> readParameter(const Message &message, std::size_t largestSize) {
  Parameter parameter;
  if (!readNumber(message.get(), parameter.keyword) || !readNumber(message.get(), parameter.type)) {
    return std::unexpected(OSStatus{errAECorruptData});
  }
  const auto isBytes = enterBytesElseFile(message.get());
  if (!isBytes) {
    return std::unexpected(isBytes.error());
  }
  auto data = *isBytes ? readBytes(message) : readFile(message, largestSize);
  if (!data) {
    return std::unexpected(data.error());
  }
  parameter.data = *std::move(data);
  if (sd_bus_message_exit_container(message.get()) < 0) {
    return std::unexpected(OSStatus{errAECorruptData});
  }
  return parameter;
}

}  // namespace

bool readNumber(sd_bus_message *message, std::uint32_t &number) {
  return sd_bus_message_read_basic(message, 'u', &number) > 0;
}

std::expected<void, OSStatus> appendParameters(sd_bus_message *message,
                                               const Parameters &parameters) {
  if (sd_bus_message_open_container(message, 'a', entrySignature) < 0) {
    return std::unexpected(OSStatus{memFullErr});
  }
  ParameterWriter writer(message);
  for (const Parameter &parameter : parameters) {
    if (const OSStatus status = writer.append(parameter); status != noErr) {
      return std::unexpected(status);
    }
  }
  if (sd_bus_message_close_container(message) < 0) {
    return std::unexpected(OSStatus{memFullErr});
  }
  return {};
}

std::expected<Parameters, OSStatus> readParameters(const Message &message,
                                                   std::size_t largestFileSize) {
  if (sd_bus_message_enter_container(message.get(), 'a', entrySignature) < 0) {
    return std::unexpected(OSStatus{errAECorruptData});
  }
  Parameters parameters;
  int entered = 0;
  while ((entered = sd_bus_message_enter_container(message.get(), 'r', entryContents)) > 0) {
    auto parameter = readParameter(message, largestFileSize);
    if (!parameter) {
      return std::unexpected(parameter.error());
    }
    parameters.push_back(*std::move(parameter));
    if (sd_bus_message_exit_container(message.get()) < 0) {
      return std::unexpected(OSStatus{errAECorruptData});
    }
  }
  if (entered < 0 || sd_bus_message_exit_container(message.get()) < 0) {
    return std::unexpected(OSStatus{errAECorruptData});
  }
  return parameters;
}

}  // namespace platform
