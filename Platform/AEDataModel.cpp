#include "Descriptor.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

using platform::EventRecord;
using platform::Parameter;
using platform::Parameters;
using platform::SharedBytes;

namespace platform {

EventRecord *eventRecord(const AEDesc *descriptor) {
  if (descriptor == nullptr || descriptor->dataHandle == nullptr) {
    return nullptr;
  }
  return std::get_if<EventRecord>(&descriptor->dataHandle->contents);
}

SharedBytes descriptorData(const AEDesc *descriptor) {
  if (descriptor == nullptr || descriptor->dataHandle == nullptr) {
    return {};
  }
  const SharedBytes *data = std::get_if<SharedBytes>(&descriptor->dataHandle->contents);
  return data == nullptr ? SharedBytes() : *data;
}

AEDesc makeDescriptor(DescType type, SharedBytes data) {
  return {type, new OpaqueAEDataStorage{std::move(data)}};
}

AEDesc makeDescriptor(EventRecord event) {
  return {typeAppleEvent, new OpaqueAEDataStorage{std::move(event)}};
}

}  // namespace platform

namespace {

std::expected<SharedBytes, OSStatus> copyOf(const void *data, Size size) {
  if (size < 0 || (data == nullptr && size > 0)) {
    return std::unexpected(OSStatus{paramErr});
  }
  return SharedBytes::copyOf(
      {static_cast<const std::byte *>(data), static_cast<std::size_t>(size)});
}

OSErr put(AppleEvent *event, Parameter parameter) try {
  EventRecord *record = platform::eventRecord(event);
  if (record == nullptr) {
    return errAENotAppleEvent;
  }
  const auto place = std::ranges::find(record->parameters, parameter.keyword, &Parameter::keyword);
  if (place != record->parameters.end()) {
    *place = std::move(parameter);
  } else {
    record->parameters.push_back(std::move(parameter));
  }
  return noErr;
} catch (const std::bad_alloc &) {
  return memFullErr;
}

std::expected<const Parameter *, OSErr> get(const AppleEvent *event, AEKeyword keyword,
                                            DescType desiredType) {
  const EventRecord *record = platform::eventRecord(event);
  if (record == nullptr) {
    return std::unexpected(OSErr{errAENotAppleEvent});
  }
  const Parameter *parameter = platform::findParameter(record->parameters, keyword);
  if (parameter == nullptr) {
    return std::unexpected(OSErr{errAEDescNotFound});
  }
  if (desiredType != typeWildCard && desiredType != parameter->type) {
    return std::unexpected(OSErr{errAECoercionFail});
  }
  return parameter;
}

void copyOut(const SharedBytes &data, void *destination, Size maximumSize) {
  const std::size_t count =
      std::min(data.size(), static_cast<std::size_t>(std::max<Size>(maximumSize, 0)));
  if (count > 0 && destination != nullptr) {
    std::memcpy(destination, data.view().data(), count);
  }
}

template <typename Value>
void store(Value *destination, std::type_identity_t<Value> value) {
  if (destination != nullptr) {
    *destination = value;
  }
}

}  // namespace

void AEInitializeDesc(AEDesc *descriptor) { *descriptor = {typeNull, nullptr}; }

OSErr AECreateDesc(DescType typeCode, const void *dataPtr, Size dataSize, AEDesc *result) try {
  AEInitializeDesc(result);
  auto data = copyOf(dataPtr, dataSize);
  if (!data) {
    return static_cast<OSErr>(data.error());
  }
  *result = platform::makeDescriptor(typeCode, *std::move(data));
  return noErr;
} catch (const std::bad_alloc &) {
  return memFullErr;
}

OSErr AEDisposeDesc(AEDesc *descriptor) {
  delete descriptor->dataHandle;
  AEInitializeDesc(descriptor);
  return noErr;
}

OSErr AECreateAppleEvent(AEEventClass eventClass, AEEventID eventID, const AEAddressDesc *target,
                         AEReturnID returnID, AETransactionID transactionID,
                         AppleEvent *result) try {
  AEInitializeDesc(result);
  *result = platform::makeDescriptor(
      EventRecord{.eventClass = eventClass,
                  .eventID = eventID,
                  .targetType = target == nullptr ? DescType{typeNull} : target->descriptorType,
                  .targetData = platform::descriptorData(target),
                  .returnID = returnID,
                  .transactionID = transactionID,
                  .parameters = {}});
  return noErr;
} catch (const std::bad_alloc &) {
  return memFullErr;
}

OSErr AEPutParamPtr(AppleEvent *event, AEKeyword keyword, DescType typeCode, const void *dataPtr,
                    Size dataSize) {
  if (platform::eventRecord(event) == nullptr) {
    return errAENotAppleEvent;
  }
  auto data = copyOf(dataPtr, dataSize);
  if (!data) {
    return static_cast<OSErr>(data.error());
  }
  return put(event, {keyword, typeCode, *std::move(data)});
}

OSErr AEPutParamDesc(AppleEvent *event, AEKeyword keyword, const AEDesc *descriptor) {
  if (descriptor == nullptr || platform::eventRecord(descriptor) != nullptr) {
    return errAENotAEDesc;
  }
  return put(event, {keyword, descriptor->descriptorType, platform::descriptorData(descriptor)});
}

OSErr AEGetParamPtr(const AppleEvent *event, AEKeyword keyword, DescType desiredType,
                    DescType *actualType, void *dataPtr, Size maximumSize, Size *actualSize) {
  const auto parameter = get(event, keyword, desiredType);
  if (!parameter) {
    return parameter.error();
  }
  store(actualType, (*parameter)->type);
  store(actualSize, static_cast<Size>((*parameter)->data.size()));
  copyOut((*parameter)->data, dataPtr, maximumSize);
  return noErr;
}

OSErr AEGetParamDesc(const AppleEvent *event, AEKeyword keyword, DescType desiredType,
                     AEDesc *result) try {
  AEInitializeDesc(result);
  const auto parameter = get(event, keyword, desiredType);
  if (!parameter) {
    return parameter.error();
  }
  *result = platform::makeDescriptor((*parameter)->type, (*parameter)->data);
  return noErr;
} catch (const std::bad_alloc &) {
  return memFullErr;
}

OSErr AESizeOfParam(const AppleEvent *event, AEKeyword keyword, DescType *typeCode,
                    Size *dataSize) {
  return AEGetParamPtr(event, keyword, typeWildCard, typeCode, nullptr, 0, dataSize);
}

OSErr AEDeleteParam(AppleEvent *event, AEKeyword keyword) {
  EventRecord *record = platform::eventRecord(event);
  if (record == nullptr) {
    return errAENotAppleEvent;
  }
  const auto isIt = [keyword](const Parameter &parameter) { return parameter.keyword == keyword; };
  return std::erase_if(record->parameters, isIt) > 0 ? noErr : errAEDescNotFound;
}

Size AEGetDescDataSize(const AEDesc *descriptor) {
  return static_cast<Size>(platform::descriptorData(descriptor).size());
}

OSErr AEGetDescData(const AEDesc *descriptor, void *dataPtr, Size maximumSize) {
  if (platform::eventRecord(descriptor) != nullptr) {
    return errAENotAEDesc;
  }
  copyOut(platform::descriptorData(descriptor), dataPtr, maximumSize);
  return noErr;
}
