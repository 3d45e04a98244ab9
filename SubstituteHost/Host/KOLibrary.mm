#import <SubstituteHostObjects/KOLibrary.h>

#import <SubstituteHostObjects/KOReference.h>
#import <SubstituteHostObjects/TextBridge.h>

#include <utility>

@implementation KOLibrary

- (id)initWithLibrary:(library::Library)opened {
  self = [super init];
  if (self != nil) library_ = std::move(opened);
  return self;
}

- (library::Library &)library {
  return *library_;
}

- (NSString *)name {
  return host::stringFromUTF8(library_->name().filename().string());
}

- (KOReference *)referenceAtRow:(library::ReferenceRow)row {
  return [[[KOReference alloc] initWithLibrary:self row:row] autorelease];
}

@end
