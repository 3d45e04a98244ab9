#pragma once

#import <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSString *NSNibName;

@interface NSBundle (NSNibLoading)
- (BOOL)loadNibNamed:(NSNibName)nibName
               owner:(nullable id)owner
     topLevelObjects:(NSArray *_Nullable *_Nullable)topLevelObjects MACOS_SINCE(10.8);
@end

@interface NSObject (NSNibAwaking)
- (void)awakeFromNib;
@end

@interface NSBundle (NSNibLoadingDeprecated)
+ (BOOL)loadNibNamed:(nullable NSString *)nibName
               owner:(nullable id)owner
    MACOS_DEPRECATED(10.0, 10.8, "use -[NSBundle loadNibNamed:owner:topLevelObjects:]");
@end

NS_ASSUME_NONNULL_END
