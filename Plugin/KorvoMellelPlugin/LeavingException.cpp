#include "LeavingException.h"

#include <exception>

bool isLeftByCPPException(Work work, void *context, Listener listener, void *listenersContext) {
  try {
    work(context);
    return false;
  } catch (const std::exception &exception) {
    listener(exception.what(), listenersContext);
  } catch (...) {
    listener("an object that is no std::exception", listenersContext);
  }
  return true;
}
