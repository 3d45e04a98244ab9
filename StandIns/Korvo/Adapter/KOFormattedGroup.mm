#import "KOFormattedGroup.h"

#import "KOBibStyle.h"

@implementation KOFormattedDocument

- (id)initWithStyle:(KOBibStyle *)style
       bibliography:(NSAttributedString *)bibliography
      citationCount:(NSUInteger)count {
  self = [super init];
  if (self != nil) {
    style_ = [style retain];
    bibliography_ = [bibliography copy];
    citationCount_ = count;
  }
  return self;
}

- (void)dealloc {
  [style_ release];
  [bibliography_ release];
  [super dealloc];
}

- (KOBibStyle *)style {
  return style_;
}

- (NSAttributedString *)bibliography {
  return bibliography_;
}

- (NSUInteger)citationCount {
  return citationCount_;
}

@end

@implementation KOFormattedGroup

- (id)initWithDocument:(KOFormattedDocument *)document
                  text:(NSAttributedString *)text
         citationCount:(NSUInteger)count {
  self = [super init];
  if (self != nil) {
    document_ = [document retain];
    text_ = [text copy];
    citationCount_ = count;
  }
  return self;
}

- (void)dealloc {
  [document_ release];
  [text_ release];
  [super dealloc];
}

- (KOFormattedDocument *)document {
  return document_;
}

- (NSAttributedString *)text {
  return text_;
}

- (NSUInteger)citationCount {
  return citationCount_;
}

@end
