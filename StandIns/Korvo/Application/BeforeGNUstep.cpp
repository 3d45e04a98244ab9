// Looks at the arguments and the environment before GNUstep does. GNUstep reads both while it is
// loaded, before main, and ends the process with words of its own where it meets one that is not
// UTF-8: a file's name from an older system, or any variable that some program left behind.
//
// So this runs before every library is ready, the sanitizers' among them: it calls the kernel and
// nothing else, and is not watched by them.
#include <unistd.h>

namespace {

constexpr int badArgument = 2;

// How many bytes of UTF-8 follow one that says so; -1 where it begins nothing.
[[gnu::no_sanitize("address", "undefined")]] int followers(unsigned char first) {
  if (first < 0x80) {
    return 0;
  }
  if (first >= 0xC2 && first < 0xE0) {
    return 1;
  }
  if (first >= 0xE0 && first < 0xF0) {
    return 2;
  }
  return first >= 0xF0 && first < 0xF5 ? 3 : -1;
}

// Whether GNUstep takes a text. It looks at the second byte for what is overlong or a surrogate.
[[gnu::no_sanitize("address", "undefined")]] bool isReadable(const char *text) {
  while (*text != '\0') {
    const auto first = static_cast<unsigned char>(*text++);
    const auto second = static_cast<unsigned char>(*text);
    int left = followers(first);
    const bool hasNoSuchSecond =
        (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
    if (left < 0 || hasNoSuchSecond) {
      return false;
    }
    for (; left > 0; --left) {
      if ((static_cast<unsigned char>(*text++) & 0xC0U) != 0x80) {
        return false;
      }
    }
  }
  return true;
}

[[gnu::no_sanitize("address", "undefined")]] void look(int argumentCount, char **arguments,
                                                       char **environment) {
  for (int index = 1; index < argumentCount; ++index) {
    if (!isReadable(arguments[index])) {
      constexpr char line[] = "korvo: an argument is not UTF-8; give the file another name\n";
      [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line, sizeof line - 1);
      _exit(badArgument);
    }
  }
  char **kept = environment;
  for (char **variable = environment; *variable != nullptr; ++variable) {
    if (isReadable(*variable)) {
      *kept++ = *variable;
    }
  }
  *kept = nullptr;
}

[[gnu::section(".preinit_array"), gnu::used]] void (*const lookBeforeGNUstep)(int, char **,
                                                                              char **) = look;

}  // namespace
