#include "FirstClick.h"

#import <Cocoa/Cocoa.h>
#import <GNUstepGUI/GSDisplayServer.h>

namespace korvo::application {

// By its name: no header declares it, and another back end may lack it.
void prepareForFirstClick() {
  id server = GSCurrentServer();
  const SEL initialize = sel_registerName("initializeMouse");
  if ([server respondsToSelector:initialize]) {
    [server performSelector:initialize];
  }
}

}  // namespace korvo::application
