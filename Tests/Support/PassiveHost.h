// A host that knows nothing and takes no notice, for programs that try the plug-in out: they
// subclass what has to answer, and need not spell out the rest of the contract.
#pragma once

#import <HostContract/HostContract.h>

#import <AppKit/AppKit.h>

// Neither a selection, nor a library, nor a style. Groups and citations are those below;
// a group's text is split at semicolons; an attributed text is its own pidgin RTF.
@interface PassiveHost : NSObject <KorvoWordProcessorIntegrationAdapter>
@end

@interface PassiveLibrary : NSObject <KorvoLibrary>
@end

// Knows its reference, which it borrows: the host's references outlive its citations.
@interface PassiveCitation : NSObject <KorvoCitation> {
 @public
  id<KorvoReference> citedReference;
}
@end

@interface PassiveGroup : NSObject <KorvoCitationGroup> {
 @public
  NSMutableArray *members;
}
@end

// A text whose RTF is at hand: AppKit's converter would want a display.
@interface TextWithRTF : NSAttributedString {
 @public
  NSString *text;
  NSData *rtf;
}
- (id)initWithText:(NSString *)newText rtf:(NSData *)newRTF;
@end
