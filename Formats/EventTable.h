// Every event that the word processor and the plug-in exchange.
//
// All of them carry one block of bytes, or nothing, as their direct object. Requests go
// from the word processor to the host process, answers the other way; the live
// bibliography alone is answered in its own reply.
#pragma once

#include "FourCharacterCode.h"

namespace formats {

// The host's application signature: who owns it gets the requests.
inline constexpr FourCharacterCode korvoSignature = fourCharacterCode("KRVO");
// Mellel's application signature, and the class of every event but the insertion.
inline constexpr FourCharacterCode mellelSignature = fourCharacterCode("mLeL");
inline constexpr FourCharacterCode insertionEventClass = fourCharacterCode("BERB");
// The keyword of the direct object.
inline constexpr FourCharacterCode directObjectKeyword = fourCharacterCode("----");
// Descriptor types of outgoing payloads. Both hold binary data, whatever their names say.
inline constexpr FourCharacterCode textDescriptorType = fourCharacterCode("TEXT");
inline constexpr FourCharacterCode bufferDescriptorType = fourCharacterCode("BUFF");

namespace request {
inline constexpr FourCharacterCode insertCitation = fourCharacterCode("FIND");
inline constexpr FourCharacterCode findCitation = fourCharacterCode("FNDN");
inline constexpr FourCharacterCode handshake = fourCharacterCode("IMHR");
inline constexpr FourCharacterCode liveBibliography = fourCharacterCode("LVBQ");
inline constexpr FourCharacterCode preliminaryScan = fourCharacterCode("PRSQ");
inline constexpr FourCharacterCode scanCitations = fourCharacterCode("Rmci");
inline constexpr FourCharacterCode finalScan = fourCharacterCode("SCNQ");
inline constexpr FourCharacterCode importCitations = fourCharacterCode("SYNC");
}  // namespace request

namespace answer {
inline constexpr FourCharacterCode preferences = fourCharacterCode("PREF");
inline constexpr FourCharacterCode cancel = fourCharacterCode("Rmcr");
inline constexpr FourCharacterCode citationResolution = fourCharacterCode("PRSR");
inline constexpr FourCharacterCode finalScan = fourCharacterCode("SCNR");
// Of class insertionEventClass.
inline constexpr FourCharacterCode citation = fourCharacterCode("cite");
}  // namespace answer

}  // namespace formats
