// Programming errors go through the platform's assertion handler, which an application may
// replace. The platform's own raises, so a caller must leave nothing behind that only its
// last lines would clean up.
#pragma once

#import <Foundation/Foundation.h>

// Reports the error as one of KorvoMellelAgent's source at a fixed line, by which it is known in
// logs whatever the source looks like today. The description is handed on as the format, so that a
// handler sees it whether it formats or not: no percent sign may stand in it. Returns if the
// handler does.
void reportProgrammingError(SEL method, id object, NSInteger lineNumber, NSString *description);

// The object, unless it is nil: then an exception (NSInternalInconsistencyException) that says what
// the host did not provide. For objects without which no right answer can be made.
id required(id object, NSString *what);
